#include "platform/linux/system/QtPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <gtest/gtest.h>

namespace sonvara::test {

namespace {

TEST(PasteboardTest, ReplacesContentsOfEveryType)
{
    auto* rich = new QMimeData;
    rich->setHtml("<b>old</b>");
    QGuiApplication::clipboard()->setMimeData(rich);
    QtPasteboard pasteboard;
    pasteboard.clearContents();
    const auto* left = QGuiApplication::clipboard()->mimeData();
    EXPECT_TRUE(left == nullptr || left->formats().isEmpty());
    pasteboard.setString("Señorita\n<b>夜</b>");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "Señorita\n<b>夜</b>");
    EXPECT_FALSE(QGuiApplication::clipboard()->mimeData()->hasHtml());
}

}  // namespace

}  // namespace sonvara::test
