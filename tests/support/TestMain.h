// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// TestMain: the main() that all QtTest programs share. A program holds the classes of one folder; its first
// argument names the class to run, the others are QtTest's. A process runs one class, so that no state of the
// process passes from one class to another.
#pragma once

#include <QApplication>
#include <QtTest>

namespace testmain
{

using Run = int (*)(int argc, char **argv);

// Registers a function under a name, whose case does not count. Called before main().
bool add(const char *name, Run run);

// A set-up is made from the arguments before its class and outlives it: the application, and what a class
// needs beside it, as bases in the order in which they are made.
struct NoApplication {
    NoApplication(int &, char **) {}
};
struct CoreApplication {
    CoreApplication(int &argc, char **argv) : application(argc, argv) {}
    QCoreApplication application;
};
struct WidgetApplication {
    WidgetApplication(int &argc, char **argv) : application(argc, argv) {}
    QApplication application;
};

template <typename Test, typename SetUp> int run(int argc, char **argv)
{
    const SetUp setUp(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace testmain

// At the end of a class's file, in place of a main().
#define TEST_CLASS(Test, SetUp)                                                                              \
    [[maybe_unused]] static const bool Test##Added = testmain::add(#Test, testmain::run<Test, SetUp>);

// A function that a test starts as a process of its own: the program itself with the function's name.
#define TEST_CHILD(function)                                                                                 \
    [[maybe_unused]] static const bool function##Added = testmain::add(#function, function);
