#include "platform/posix/PosixNoteStore.h"

#include "platform/posix/Descriptors.h"

#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>
#include <unistd.h>

namespace sonvara {
namespace {

// Far more than any notes; what is larger is not ours.
constexpr std::size_t mostBytes = std::size_t{64} * 1024;

bool writeAll(int file, std::string_view text)
{
    while (!text.empty()) {
        const auto written = ::write(file, text.data(), text.size());
        if (written <= 0) return false;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool write(const std::string& path, std::string_view text)
{
    const FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
    return file.get() >= 0 && writeAll(file.get(), text);
}

}  // namespace

std::optional<std::string> PosixNoteStore::load()
{
    std::ifstream file(path_, std::ios::binary);
    if (!file) return std::nullopt;
    std::string text(mostBytes + 1, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(file.gcount()));
    return text;
}

void PosixNoteStore::save(const std::string& text)
{
    const auto folder = std::filesystem::path(path_).parent_path();
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);
    const auto beside = path_ + ".new";
    if (!write(beside, text) || std::rename(beside.c_str(), path_.c_str()) != 0) ::unlink(beside.c_str());
}

void PosixNoteStore::remove()
{
    ::unlink(path_.c_str());
}

void PosixNoteStore::setAside()
{
    (void)std::rename(path_.c_str(), (path_ + ".damaged").c_str());
}

}  // namespace sonvara
