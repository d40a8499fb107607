// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "device/hidusb/LogFile.h"

#include "device/hidusb/ErrorText.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace hidusb
{

static constexpr const char *NotRegular = "it is no regular file";
static constexpr std::size_t LineLimit = 1000;

LogFile::LogFile(std::string path, std::string head, std::size_t limit)
    : path_(std::move(path)), head_(std::move(head)), limit_(limit)
{
}

LogFile::~LogFile()
{
    if (file_ >= 0)
        ::close(file_);
}

std::string LogFile::open()
{
    // Opening alone already acts on some devices, so they are recognized before.
    struct stat found;
    if (::lstat(path_.c_str(), &found) == 0 && !S_ISREG(found.st_mode))
        return NotRegular;
    file_ =
        ::open(path_.c_str(), O_RDWR | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC,
               S_IRUSR | S_IWUSR);
    std::string reason = file_ >= 0 ? check() : errorText(errno);
    if (reason.empty()) {
        size_ = static_cast<std::size_t>(::lseek(file_, 0, SEEK_END));
        reason = append(head_) ? std::string() : errorText(errno);
    }
    if (!reason.empty() && file_ >= 0) {
        ::close(file_);
        file_ = -1;
    }
    return reason;
}

std::string LogFile::check() const
{
    struct stat opened;
    if (::fstat(file_, &opened) != 0)
        return errorText(errno);
    if (!S_ISREG(opened.st_mode))
        return NotRegular;
    // Not every file system has locks.
    if (::flock(file_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return "another process writes it";
    const std::string signature = Signature;
    std::string begin(signature.size(), '\0');
    if (opened.st_size > 0 && (::pread(file_, begin.data(), begin.size(), 0) < 0 || begin != signature))
        return "it holds something else";
    return {};
}

bool LogFile::append(const std::string &line)
{
    std::string text = line.substr(0, LineLimit);
    std::replace_if(
        text.begin(), text.end(), [](char c) { return std::iscntrl(static_cast<unsigned char>(c)) != 0; },
        '?');
    text += '\n';
    return (size_ + text.size() <= limit_ || dropOlderHalf()) && write(text);
}

// The head is repeated behind what stays: the times of the lines that follow count from it.
bool LogFile::dropOlderHalf()
{
    std::string kept(std::min(size_, limit_ / 2), '\0');
    const ssize_t got = ::pread(file_, kept.data(), kept.size(), static_cast<off_t>(size_ - kept.size()));
    kept.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    kept.erase(0, std::min(kept.find('\n'), kept.size() - 1) + 1);
    if (::ftruncate(file_, 0) != 0)
        return false;
    size_ = 0;
    return write(std::string(Signature) + ": older lines were dropped\n" + kept + head_ + '\n');
}

bool LogFile::write(const std::string &text)
{
    const ssize_t written = ::write(file_, text.data(), text.size());
    if (written == static_cast<ssize_t>(text.size())) {
        size_ += text.size();
        return true;
    }
    if (written >= 0) {
        // Half a line would be read as a whole one.
        [[maybe_unused]] const int restored = ::ftruncate(file_, static_cast<off_t>(size_));
        errno = ENOSPC;
    }
    return false;
}

} // namespace hidusb
