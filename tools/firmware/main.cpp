// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// make-firmware TABLE FOLDER: writes a firmware file for each line of the table. The content behind the head
// is a pattern, which an emulated device takes like any other.
#include "device/hidusb/wire/FirmwareFile.h"
#include "device/hidusb/wire/Report.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <sstream>
#include <vector>
#include <zlib.h>

namespace
{

struct Line {
    std::string file, target, version, baseName;
    unsigned cid = 0, mid = 0, kHz = 0;
    std::size_t bytes = 0;

    bool read(const std::string &text)
    {
        std::istringstream words(text);
        std::string more;
        words >> file >> target >> cid >> mid >> kHz >> version >> baseName >> bytes;
        return words && !(words >> more) && isSound();
    }
    bool isSound() const
    {
        return (target == "mouse" || target == "receiver") && cid < 256 && mid < 256 && kHz < 256 &&
               baseName.size() < sizeof wire::FirmwareHead::BaseName && bytes >= sizeof(wire::FirmwareHead) &&
               bytes <= wire::FirmwareSizeLimit && file.find('/') == std::string::npos;
    }
};

bool versionOf(const std::string &text, uint16_t &version)
{
    unsigned major = 0, minor = 0;
    char more = 0;
    if (std::sscanf(text.c_str(), "%u.%2x%c", &major, &minor, &more) != 2 || major > 255)
        return false;
    version = static_cast<uint16_t>(major << 8 | minor);
    return true;
}

std::vector<uint8_t> imageOf(const Line &line, uint16_t version)
{
    std::vector<uint8_t> image(line.bytes);
    for (std::size_t i = 0; i < image.size(); ++i)
        image[i] = static_cast<uint8_t>(i * 7 + i / 256);
    wire::FirmwareHead head{};
    head.Magic.set(wire::FirmwareMagic);
    head.FileLength.set(static_cast<uint32_t>(image.size()));
    head.Version.set(version);
    head.ReceiverKHz = static_cast<uint8_t>(line.kHz);
    head.Target = line.target == "mouse" ? wire::TargetMouse : wire::TargetReceiver;
    head.Cid = static_cast<uint8_t>(line.cid);
    head.Mid = static_cast<uint8_t>(line.mid);
    std::memcpy(head.BaseName, line.baseName.data(), line.baseName.size());
    std::memcpy(image.data(), &head, sizeof head);
    constexpr std::size_t from = offsetof(wire::FirmwareHead, Version);
    head.Crc32.set(
        static_cast<uint32_t>(crc32(0, image.data() + from, static_cast<uInt>(image.size() - from))));
    std::memcpy(image.data(), &head, sizeof head);
    return image;
}

bool write(const std::string &path, const std::vector<uint8_t> &image)
{
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char *>(image.data()), static_cast<std::streamsize>(image.size()));
    return static_cast<bool>(file.flush());
}

} // namespace

int main(int count, char **arguments)
{
    if (count != 3) {
        std::cerr << "make-firmware TABLE FOLDER\n";
        return EXIT_FAILURE;
    }
    std::ifstream table(arguments[1]);
    if (!table) {
        std::cerr << arguments[1] << ": cannot be read\n";
        return EXIT_FAILURE;
    }
    std::string text;
    for (int number = 1; std::getline(table, text); ++number) {
        if (text.empty() || text[0] == '#')
            continue;
        Line line;
        uint16_t version = 0;
        if (!line.read(text) || !versionOf(line.version, version) ||
            !write(std::string(arguments[2]) + '/' + line.file, imageOf(line, version))) {
            std::cerr << arguments[1] << ':' << number << ": not a line of this table, or not written\n";
            return EXIT_FAILURE;
        }
    }
    return EXIT_SUCCESS;
}
