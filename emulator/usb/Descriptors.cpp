// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/usb/Descriptors.h"

#include "device/hidusb/wire/Report.h"

#include <algorithm>

namespace emulator
{

namespace
{

using Bytes = std::vector<uint8_t>;

constexpr uint8_t ScreenReportId = 0x0A; // first byte of a screen's clock packet

constexpr uint8_t low(std::size_t value) { return static_cast<uint8_t>(value & 0xFF); }
constexpr uint8_t high(std::size_t value) { return static_cast<uint8_t>(value >> 8 & 0xFF); }

void append(Bytes &bytes, std::initializer_list<std::size_t> more)
{
    for (const std::size_t byte : more)
        bytes.push_back(low(byte));
}

// Five buttons, two axes and a wheel.
Bytes mouseReport()
{
    return {0x05, 0x01, 0x09, 0x02, 0xA1, 0x01, 0x09, 0x01, 0xA1, 0x00, // mouse, pointer
            0x05, 0x09, 0x19, 0x01, 0x29, 0x05, 0x15, 0x00, 0x25, 0x01, // buttons 1 to 5
            0x95, 0x05, 0x75, 0x01, 0x81, 0x02, 0x95, 0x01, 0x75, 0x03,
            0x81, 0x03,                                                 // a bit each, 3 of padding
            0x05, 0x01, 0x09, 0x30, 0x09, 0x31, 0x09, 0x38,             // X, Y, wheel
            0x15, 0x81, 0x25, 0x7F, 0x95, 0x03, 0x75, 0x08, 0x81, 0x06, // relative bytes
            0xC0, 0xC0};
}

// A vendor-defined collection: input and output reports of 63 bytes after their id.
void appendVendorReport(Bytes &bytes, uint16_t usagePage)
{
    append(bytes, {0x06, low(usagePage), high(usagePage), 0x09, 0x01, 0xA1, 0x01});
    append(bytes, {0x15, 0x00, 0x26, 0xFF, 0x00, 0x75, 0x08});
    append(bytes, {0x85, reportIdOf(usagePage), 0x95, wire::ReportSize - 1});
    append(bytes, {0x09, 0x02, 0x81, 0x02, 0x09, 0x03, 0x91, 0x02, 0xC0});
}

bool isMouse(const UsbFace &face) { return face.collections.front().name.usagePage == wire::MouseUsagePage; }

std::vector<UsbFace> facesOf(const std::vector<Interface> &interfaces)
{
    std::vector<UsbFace> faces;
    for (const Interface &each : interfaces) {
        const int number = each.name.interfaceNumber;
        const auto known = std::find_if(faces.begin(), faces.end(),
                                        [number](const UsbFace &face) { return face.number == number; });
        UsbFace &face = known != faces.end() ? *known : (faces.push_back({number, {}, {}}), faces.back());
        face.collections.push_back(each);
    }
    for (UsbFace &face : faces) {
        if (isMouse(face))
            face.report = mouseReport();
        else
            for (const Interface &each : face.collections)
                appendVendorReport(face.report, each.name.usagePage);
    }
    return faces;
}

void appendFace(Bytes &bytes, const UsbFace &face, std::size_t place)
{
    constexpr uint8_t in = 0x80;
    const bool mouse = isMouse(face);
    append(bytes, {9, 4, static_cast<std::size_t>(face.number), 0, mouse ? 1U : 2U, 3, mouse ? 1U : 0U,
                   mouse ? 2U : 0U, 0});
    append(bytes, {9, 0x21, 0x11, 0x01, 0, 1, 0x22, low(face.report.size()), high(face.report.size())});
    // Interrupt endpoints with an interval of 1 ms.
    append(bytes, {7, 5, static_cast<std::size_t>(in | endpointOf(place)), 3, wire::ReportSize, 0, 1});
    if (!mouse)
        append(bytes, {7, 5, endpointOf(place), 3, wire::ReportSize, 0, 1});
}

Bytes configurationOf(const std::vector<UsbFace> &faces)
{
    constexpr std::size_t busPowered = 0x80;
    constexpr std::size_t wakesHost = 0x20;
    constexpr std::size_t milliamperes = 100;
    Bytes bytes;
    append(bytes, {9, 2, 0, 0, faces.size(), 1, 0, busPowered | wakesHost, milliamperes / 2});
    for (std::size_t place = 0; place < faces.size(); ++place)
        appendFace(bytes, faces[place], place);
    bytes[2] = low(bytes.size());
    bytes[3] = high(bytes.size());
    return bytes;
}

Bytes stringDescriptor(const std::string &text)
{
    Bytes bytes{static_cast<uint8_t>(2 + 2 * text.size()), 3};
    for (const char each : text)
        append(bytes, {static_cast<uint8_t>(each), 0});
    return bytes;
}

} // namespace

uint8_t reportIdOf(uint16_t usagePage)
{
    if (usagePage == wire::MouseUsagePage)
        return 0;
    return usagePage == wire::ScreenUsagePage ? ScreenReportId : wire::ReportId;
}

UsbDescription describeUsb(const std::vector<Interface> &interfaces)
{
    const wire::BusName &name = interfaces.front().name;
    UsbDescription usb;
    usb.faces = facesOf(interfaces);
    usb.configuration = configurationOf(usb.faces);
    usb.strings = {{4, 3, 0x09, 0x04}, // US English
                   stringDescriptor("Emulated devices"),
                   stringDescriptor("Emulated " + name.serial),
                   stringDescriptor(name.serial)};
    append(usb.device, {18, 1, 0x00, 0x02, 0, 0, 0, 64});
    append(usb.device, {low(name.vendorId), high(name.vendorId), low(name.productId), high(name.productId)});
    append(usb.device, {low(name.release), high(name.release), 1, 2, 3, 1});
    return usb;
}

} // namespace emulator
