// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "environment/CrashFile.h"

#include "environment/CrashName.h"
#include "environment/DataRoot.h"

#include <QDir>
#include <QFile>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <execinfo.h>
#include <fcntl.h>
#include <link.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{

constexpr int MaxFrames = 64;
constexpr std::size_t AlternateStackSize = 131072;
constexpr unsigned LongestHandlerSeconds = 5;

struct FaultSignal {
    int number;
    const char *name;
};
constexpr FaultSignal FaultSignals[] = {
    {SIGSEGV, "SIGSEGV"}, {SIGABRT, "SIGABRT"}, {SIGBUS, "SIGBUS"}, {SIGILL, "SIGILL"}, {SIGFPE, "SIGFPE"},
};

// Written before the handlers are installed, only read afterwards.
char crashPath[PATH_MAX];
std::size_t crashFolderLength = 0; // of crashPath without the last "/" and the name
long localOffsetSeconds = 0;
char buildId[2 * 64 + 1];
alignas(16) char alternateStack[AlternateStackSize];

std::atomic<pid_t> crashingThread{0};
static_assert(std::atomic<pid_t>::is_always_lock_free, "the handler may not take a lock");

// From here to installCrashFilter(): nothing but async-signal-safe calls.

void writeText(int file, const char *text)
{
    std::size_t left = strlen(text);
    while (left > 0) {
        const ssize_t count = write(file, text, left);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return;
        text += count;
        left -= std::size_t(count);
    }
}

void writeNumber(int file, uint64_t value, unsigned base)
{
    char digits[24];
    char *first = digits + sizeof digits - 1;
    *first = '\0';
    do {
        *--first = "0123456789abcdef"[value % base];
        value /= base;
    } while (value != 0);
    writeText(file, first);
}

int openCrashFile()
{
    crashPath[crashFolderLength] = '\0';
    mkdir(crashPath, 0700);
    crashPath[crashFolderLength] = '/';
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    formatCrashName(int64_t(now.tv_sec) + localOffsetSeconds, crashPath + crashFolderLength + 1);
    // O_EXCL: an existing file or link is never written to.
    unlink(crashPath);
    return open(crashPath, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
}

const char *signalName(int number)
{
    for (const FaultSignal &fault : FaultSignals) {
        if (fault.number == number)
            return fault.name;
    }
    return "unknown";
}

void writeCrashFile(int file, int number, const siginfo_t *info)
{
    writeText(file, "version " MORLEN_VERSION "\nbuild id ");
    writeText(file, buildId);
    writeText(file, "\nsignal ");
    writeNumber(file, uint64_t(number), 10);
    writeText(file, " ");
    writeText(file, signalName(number));
    writeText(file, "\naddress 0x");
    // A signal sent by a process has no address; the union then holds the sender.
    writeNumber(file, info->si_code > 0 ? reinterpret_cast<uintptr_t>(info->si_addr) : 0, 16);
    writeText(file, "\nprocess ");
    writeNumber(file, uint64_t(getpid()), 10);
    writeText(file, " thread ");
    writeNumber(file, uint64_t(syscall(SYS_gettid)), 10);
    writeText(file, "\nbacktrace\n");
    void *frames[MaxFrames];
    backtrace_symbols_fd(frames, backtrace(frames, MaxFrames), file);
}

// The system's own handling, which leaves a core dump where those are wanted.
[[noreturn]] void endBySignal(int number)
{
    alarm(0); // a dump may take long
    signal(number, SIG_DFL);
    raise(number);
    std::_Exit(128 + number);
}

void onFault(int number, siginfo_t *info, void *)
{
    const pid_t self = pid_t(syscall(SYS_gettid));
    pid_t holder = 0;
    if (!crashingThread.compare_exchange_strong(holder, self)) {
        // A fault in the handler ends the process at once; other threads wait until the first one has ended
        // it.
        if (holder == self)
            endBySignal(number);
        for (;;)
            pause();
    }
    // The unwinder may wait for a lock that the faulting thread holds; the alarm then ends the process.
    signal(SIGALRM, SIG_DFL);
    alarm(LongestHandlerSeconds);
    const int file = openCrashFile();
    if (file >= 0) {
        writeCrashFile(file, number, info);
        close(file);
    }
    endBySignal(number);
}

// Takes the note of the linker, if this is one.
void takeBuildId(const ElfW(Nhdr) * note)
{
    const auto *const name = reinterpret_cast<const char *>(note + 1);
    if (note->n_type != NT_GNU_BUILD_ID || note->n_namesz != 4 || memcmp(name, "GNU", 4) != 0)
        return;
    const auto *const bytes = reinterpret_cast<const unsigned char *>(name + note->n_namesz);
    for (std::size_t i = 0; i < note->n_descsz && 2 * i + 2 < sizeof buildId; ++i) {
        buildId[2 * i] = "0123456789abcdef"[bytes[i] >> 4];
        buildId[2 * i + 1] = "0123456789abcdef"[bytes[i] & 0xF];
    }
}

// The program comes first of the loaded objects; the others are not looked at.
int findBuildId(dl_phdr_info *program, std::size_t, void *)
{
    const auto padded = [](std::size_t size) { return (size + 3) & ~std::size_t(3); };
    for (int i = 0; i < program->dlpi_phnum; ++i) {
        const ElfW(Phdr) &part = program->dlpi_phdr[i];
        if (part.p_type != PT_NOTE || part.p_align > 4)
            continue;
        const auto *const notes = reinterpret_cast<const char *>(program->dlpi_addr + part.p_vaddr);
        for (std::size_t at = 0; at + sizeof(ElfW(Nhdr)) <= part.p_memsz;) {
            const auto *const note = reinterpret_cast<const ElfW(Nhdr) *>(notes + at);
            takeBuildId(note);
            at += sizeof *note + padded(note->n_namesz) + padded(note->n_descsz);
        }
    }
    return 1;
}

bool preparePath()
{
    const QString folder = dataRoot() + QStringLiteral("/Exception");
    QDir().mkpath(folder);
    const QByteArray path = QFile::encodeName(folder);
    if (std::size_t(path.size()) + 1 + CrashNameSize > sizeof crashPath)
        return false;
    memcpy(crashPath, path.constData(), std::size_t(path.size()));
    crashFolderLength = std::size_t(path.size());
    return true;
}

void installHandlers()
{
    stack_t stack = {};
    stack.ss_sp = alternateStack;
    stack.ss_size = sizeof alternateStack;
    sigaltstack(&stack, nullptr);
    struct sigaction action = {};
    action.sa_sigaction = onFault;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_NODEFER;
    sigemptyset(&action.sa_mask);
    for (const FaultSignal &fault : FaultSignals)
        sigaction(fault.number, &action, nullptr);
}

} // namespace

void installCrashFilter()
{
    static bool installed = false;
    if (installed || !preparePath())
        return;
    installed = true;
    dl_iterate_phdr(findBuildId, nullptr);
    localOffsetSeconds = QDateTime::currentDateTime().offsetFromUtc();
    // The first backtrace loads the unwinder, which allocates.
    void *frame = nullptr;
    backtrace(&frame, 1);
    installHandlers();
}
