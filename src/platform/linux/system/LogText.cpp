#include "platform/linux/system/LogText.h"

#include <QChar>
#include <QList>
#include <QString>
#include <array>
#include <cstdio>

namespace sonvara {

namespace {

bool isHarmless(char32_t code)
{
    switch (QChar::category(code)) {
    case QChar::Other_Control:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph: return false;
    case QChar::Other_Format: return code == 0x200C || code == 0x200D;  // joiners, which emoji need
    default: return true;
    }
}

std::string escape(char32_t code)
{
    if (code == U'\n') return "\\n";
    if (code == U'\r') return "\\r";
    if (code == U'\t') return "\\t";
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), code < 0x80 ? "\\x%02x" : "\\u%04x", static_cast<unsigned>(code));
    return text.data();
}

}  // namespace

std::string escapedForLog(std::string_view text)
{
    std::string result;
    for (const char32_t code : QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).toUcs4())
        result += isHarmless(code) ? QString::fromUcs4(&code, 1).toStdString() : escape(code);
    return result;
}

std::string logText(const LogMessage& message, bool showsPrivate)
{
    std::string result;
    for (const auto& piece : message.pieces)
        result += piece.isPublic || showsPrivate ? escapedForLog(piece.text) : "<private>";
    return result;
}

}  // namespace sonvara
