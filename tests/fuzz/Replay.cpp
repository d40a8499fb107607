// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// main() of a fuzz target where no fuzzer leads it: each file of the corpus whose folder is the first
// argument goes through the target, whole, cut, and changed at random with a fixed seed. FUZZ_ROUNDS says how
// often, in place of 150 times.
#include "tests/fuzz/Target.h"

#include <QDir>
#include <cstdio>
#include <random>
#include <vector>

namespace
{

void take(const QByteArray &bytes)
{
    // A copy of exactly that size, so that a sanitizer sees a read behind it.
    const std::vector<uint8_t> exact(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(exact.data(), exact.size());
}

QByteArray changed(QByteArray bytes, const QByteArray &other, std::mt19937 &random)
{
    const auto place = [&random](const QByteArray &in) { return int(random() % uint32_t(in.size() + 1)); };
    for (uint32_t changes = 1 + random() % 4; changes > 0; --changes) {
        switch (random() % 6) {
        case 0:
            bytes.insert(place(bytes), char(random()));
            break;
        case 1:
            bytes.remove(place(bytes), int(random() % 8));
            break;
        case 2:
            bytes = bytes.left(place(bytes)) + other.mid(place(other));
            break;
        case 3:
            bytes.insert(place(bytes), bytes.mid(place(bytes), int(random() % 64)));
            break;
        default:
            if (!bytes.isEmpty())
                bytes[int(random() % uint32_t(bytes.size()))] = char(random());
        }
    }
    return bytes;
}

} // namespace

int main(int argc, char **argv)
{
    const QDir folder(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString());
    std::vector<QByteArray> corpus;
    for (const QString &name : folder.entryList(QDir::Files, QDir::Name)) {
        QFile file(folder.filePath(name));
        if (file.open(QIODevice::ReadOnly))
            corpus.push_back(file.readAll());
    }
    if (argc < 2 || corpus.empty()) {
        std::fprintf(stderr, "no corpus\n");
        return 1;
    }
    const int asked = qEnvironmentVariableIntValue("FUZZ_ROUNDS");
    const int rounds = asked > 0 ? asked : 150;
    std::mt19937 random(1);
    for (const QByteArray &each : corpus) {
        for (int size = 0; size < each.size(); size += 1 + size / 64)
            take(each.left(size));
        take(each);
        for (int i = 0; i < rounds; ++i)
            take(changed(each, corpus[random() % corpus.size()], random));
    }
    return 0;
}
