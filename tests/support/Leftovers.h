// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Leftovers: at its end no thread and no descriptor is left that was not there before the process's first
// one, but for the thread of the layer's callbacks, which lasts from the first callback on. Made before
// whatever it looks after, on the main thread.
#pragma once

#include <QtTest>
#include <algorithm>
#include <filesystem>
#include <fstream>

class Leftovers
{
public:
    Leftovers()
    {
        if (first.threads != 0)
            return;
        QVERIFY(QTest::qWaitFor(areAllNamed, 10000));
        first = count();
    }
    ~Leftovers()
    {
        const auto isClean = [] {
            const Counts now = count();
            const long more = now.threads - first.threads;
            return (more == lasting || more == 1) && now.files == first.files;
        };
        const bool clean = QTest::qWaitFor(isClean, 10000);
        const Counts now = count();
        lasting = now.threads > first.threads ? 1 : lasting;
        if (!clean) // the list takes a look at each thread and descriptor
            QFAIL(qPrintable(QStringLiteral("%1 threads, at first %2; %3 descriptors, at first %4:%5")
                                 .arg(now.threads)
                                 .arg(first.threads)
                                 .arg(now.files)
                                 .arg(first.files)
                                 .arg(QString::fromStdString(whatIsThere()))));
    }
    Leftovers(const Leftovers &) = delete;
    Leftovers &operator=(const Leftovers &) = delete;

private:
    struct Counts {
        long threads;
        long files;
    };
    using Folder = std::filesystem::directory_iterator;

    // What Qt starts at the first need and keeps, with a descriptor each: the stores' writers, which sleep
    // for half a minute after their last file, and on a display the way to the desktop's services.
    static bool isOfQt(const std::filesystem::path &thread)
    {
        const std::string name = nameOf(thread);
        return name == "Thread (pooled)" || name == "QDBusConnection";
    }
    // A thread that has not run yet has the name of the one that started it, so that one of Qt's is not known
    // as such.
    static bool areAllNamed()
    {
        std::error_code error;
        const std::string own = nameOf("/proc/self");
        return std::count_if(Folder("/proc/self/task", error), Folder(),
                             [&](const auto &thread) { return nameOf(thread.path()) == own; }) == 1;
    }
    static std::string nameOf(const std::filesystem::path &thread)
    {
        std::ifstream file(thread / "comm");
        std::string name;
        std::getline(file, name);
        return name;
    }
    static Counts count()
    {
        std::error_code error;
        Counts now{0, 0};
        for (const auto &thread : Folder("/proc/self/task", error)) {
            const bool ofQt = isOfQt(thread.path());
            now.threads += !ofQt;
            now.files -= ofQt;
        }
        now.files += long(std::distance(Folder("/proc/self/fd", error), Folder()));
        return now;
    }

    // Each thread with where it waits in the kernel, and each descriptor with what it is of.
    static std::string whatIsThere()
    {
        std::error_code error;
        std::string lines;
        for (const auto &thread : Folder("/proc/self/task", error)) {
            std::string call;
            std::getline(std::ifstream(thread.path() / "syscall"), call);
            lines += "\nthread " + nameOf(thread.path()) + " in " + call;
        }
        for (const auto &file : Folder("/proc/self/fd", error))
            lines += "\ndescriptor " + std::filesystem::read_symlink(file.path(), error).string();
        return lines;
    }

    static inline Counts first{0, 0};
    static inline long lasting = 0;
};
