// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A program in a process of its own, with pipes to its standard input and output. It ends with this object.
#pragma once

#include "emulator/FileDescriptor.h"

#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

class ChildProgram
{
public:
    // The first word is the program's path. `quiet`: its standard error is dropped.
    explicit ChildProgram(std::vector<std::string> words, bool quiet = false)
    {
        int in[2];
        int out[2];
        if (::pipe2(in, O_CLOEXEC) != 0 || ::pipe2(out, O_CLOEXEC) != 0)
            return;
        std::vector<char *> arguments;
        for (std::string &word : words)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);
        pid_ = ::fork();
        if (pid_ == 0) {
            ::dup2(in[0], STDIN_FILENO);
            ::dup2(out[1], STDOUT_FILENO);
            if (quiet)
                ::dup2(::open("/dev/null", O_WRONLY), STDERR_FILENO);
            ::execv(arguments[0], arguments.data());
            ::_exit(127);
        }
        ::close(in[0]);
        ::close(out[1]);
        input_ = emulator::FileDescriptor(in[1]);
        output_ = emulator::FileDescriptor(out[0]);
    }
    ~ChildProgram()
    {
        if (pid_ > 0)
            end(SIGKILL);
    }
    ChildProgram(const ChildProgram &) = delete;
    ChildProgram &operator=(const ChildProgram &) = delete;

    void write(const std::string &text) const
    {
        EXPECT_EQ(::write(input_.get(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    void closeInput() { input_.reset(); }
    // The next line of its output; empty at the end.
    std::string line() const
    {
        std::string text;
        char byte = 0;
        while (::read(output_.get(), &byte, 1) == 1 && byte != '\n')
            text += byte;
        return text;
    }
    std::string rest() const
    {
        std::string text;
        char byte = 0;
        while (::read(output_.get(), &byte, 1) == 1)
            text += byte;
        return text;
    }
    // Its exit status, or the number of the signal that ended it, negative.
    int wait()
    {
        int status = 0;
        ::waitpid(std::exchange(pid_, 0), &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }
    int end(int signal)
    {
        ::kill(pid_, signal);
        return wait();
    }

private:
    pid_t pid_ = 0;
    emulator::FileDescriptor input_;
    emulator::FileDescriptor output_;
};
