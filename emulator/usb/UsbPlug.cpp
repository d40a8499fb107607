// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/usb/UsbPlug.h"

#include "device/hidusb/wire/Report.h"

#include <algorithm>
#include <cerrno>
#include <sys/socket.h>

namespace emulator
{

namespace
{

// The URB messages of USB/IP, the controller's protocol: 48 bytes of big-endian words, then the data of an
// OUT request or of the answer to an IN request.
constexpr std::size_t HeadSize = 48;
constexpr std::size_t SetupAt = 40;
constexpr std::size_t DataLimit = 0x10000;
constexpr std::size_t ReportLimit = 64; // waiting for one endpoint
enum : uint32_t { Submit = 1, Unlink = 2, Submitted = 3, Unlinked = 4 };

uint32_t word(const uint8_t *bytes)
{
    return uint32_t(bytes[0]) << 24 | uint32_t(bytes[1]) << 16 | uint32_t(bytes[2]) << 8 | bytes[3];
}

void putWord(uint8_t *bytes, uint32_t value)
{
    for (int i = 0; i < 4; ++i)
        bytes[i] = static_cast<uint8_t>(value >> (24 - 8 * i));
}

// bmRequestType and bRequest.
enum : unsigned {
    GetStatus = 0x8000,
    GetInterfaceStatus = 0x8100,
    GetDescriptor = 0x8006,
    GetHidDescriptor = 0x8106,
    GetConfiguration = 0x8008,
    SetConfiguration = 0x0009,
    SetFeature = 0x0003,
    ClearFeature = 0x0001,
    ClearHalt = 0x0201,
    SetInterface = 0x010B,
    SetReport = 0x2109,
    SetIdle = 0x210A,
    SetProtocol = 0x210B,
};

unsigned kindOf(const uint8_t *setup) { return unsigned(setup[0]) << 8 | setup[1]; }

} // namespace

UsbPlug::UsbPlug(std::vector<Interface> interfaces, FileDescriptor socket)
    : interfaces_(std::move(interfaces))
    , usb_(describeUsb(interfaces_))
    , socket_(std::move(socket))
    , pipes_(usb_.faces.size())
{
}

bool UsbPlug::service(const DeviceBus::Handler &handler)
{
    return receive() && takeRequests(handler) && !broken_;
}

bool UsbPlug::receive()
{
    uint8_t bytes[16 * 1024];
    const ssize_t size = ::recv(socket_.get(), bytes, sizeof bytes, MSG_DONTWAIT);
    if (size < 0)
        return errno == EAGAIN || errno == EINTR;
    input_.insert(input_.end(), bytes, bytes + size);
    return size > 0;
}

bool UsbPlug::takeRequests(const DeviceBus::Handler &handler)
{
    std::size_t at = 0;
    while (input_.size() - at >= HeadSize) {
        const uint8_t *head = input_.data() + at;
        const bool submits = word(head) == Submit;
        if (!submits && word(head) != Unlink)
            return false;
        Request request{word(head + 4),  word(head + 16), word(head + 12) != 0,
                        word(head + 24), head + SetupAt,  head + HeadSize};
        const std::size_t data = submits && !request.in ? request.length : 0;
        if (request.length > DataLimit && submits)
            return false;
        if (input_.size() - at < HeadSize + data)
            break;
        if (submits)
            submit(request, handler);
        else
            unlink(request.sequence, word(head + 20));
        at += HeadSize + data;
    }
    input_.erase(input_.begin(), input_.begin() + static_cast<std::ptrdiff_t>(at));
    return true;
}

void UsbPlug::submit(const Request &request, const DeviceBus::Handler &handler)
{
    if (request.endpoint == 0)
        return control(request, handler);
    const std::size_t place = request.endpoint - 1;
    if (place >= usb_.faces.size())
        return refuse(request);
    if (!request.in) {
        takeReport(usb_.faces[place], request, handler);
        return complete(request, {});
    }
    Pipe &pipe = pipes_[place];
    pipe.polled = true;
    pipe.transfers.push_back({request.sequence, request.length});
    pump(pipe);
}

void UsbPlug::control(const Request &request, const DeviceBus::Handler &handler)
{
    const std::size_t index = request.setup[4];
    switch (kindOf(request.setup)) {
    case GetDescriptor:
    case GetHidDescriptor:
        if (const std::vector<uint8_t> *found = descriptor(request.setup))
            return complete(request, *found);
        return refuse(request);
    case GetStatus:
    case GetInterfaceStatus:
        return complete(request, {0, 0});
    case GetConfiguration:
        return complete(request, {1});
    case SetReport:
        for (const UsbFace &face : usb_.faces)
            if (face.number == static_cast<int>(index))
                takeReport(face, request, handler);
        return complete(request, {});
    case SetConfiguration:
    case SetFeature:
    case ClearFeature:
    case ClearHalt:
    case SetInterface:
    case SetIdle:
    case SetProtocol:
        return complete(request, {});
    default:
        refuse(request);
    }
}

const std::vector<uint8_t> *UsbPlug::descriptor(const uint8_t *setup) const
{
    const std::size_t which = setup[2];
    switch (setup[3]) {
    case 1:
        return &usb_.device;
    case 2:
        return which == 0 ? &usb_.configuration : nullptr;
    case 3:
        return which < usb_.strings.size() ? &usb_.strings[which] : nullptr;
    case 0x22:
        for (const UsbFace &face : usb_.faces)
            if (face.number == setup[4])
                return &face.report;
        return nullptr;
    default:
        return nullptr;
    }
}

void UsbPlug::takeReport(const UsbFace &face, const Request &request, const DeviceBus::Handler &handler)
{
    const uint8_t id = request.length > 0 ? request.data[0] : 0;
    for (const Interface &each : face.collections) {
        if (reportIdOf(each.name.usagePage) == id)
            return handler(each, request.data, request.length);
    }
    // An unknown report id: the first collection discards the report.
    handler(face.collections.front(), request.data, request.length);
}

// The host ends a transfer: somebody closed the interface.
void UsbPlug::unlink(uint32_t sequence, uint32_t unlinked)
{
    int32_t status = 0;
    for (Pipe &pipe : pipes_) {
        const auto found =
            std::find_if(pipe.transfers.begin(), pipe.transfers.end(),
                         [unlinked](const Waiting &each) { return each.sequence == unlinked; });
        if (found == pipe.transfers.end())
            continue;
        pipe.transfers.erase(found);
        status = -ECONNRESET;
        pipe.polled = !pipe.transfers.empty();
        if (!pipe.polled)
            pipe.reports.clear();
    }
    answer(Unlinked, sequence, status, 0, {});
}

void UsbPlug::send(uint16_t usagePage, const std::vector<uint8_t> &bytes)
{
    for (std::size_t place = 0; place < usb_.faces.size(); ++place) {
        Pipe &pipe = pipes_[place];
        const auto &collections = usb_.faces[place].collections;
        const bool its = std::any_of(collections.begin(), collections.end(), [usagePage](const auto &each) {
            return each.name.usagePage == usagePage;
        });
        if (!its || !pipe.polled || pipe.reports.size() >= ReportLimit)
            continue;
        pipe.reports.push_back(bytes);
        pump(pipe);
    }
}

void UsbPlug::pump(Pipe &pipe)
{
    while (!pipe.transfers.empty() && !pipe.reports.empty()) {
        const Waiting transfer = pipe.transfers.front();
        std::vector<uint8_t> report = std::move(pipe.reports.front());
        pipe.transfers.pop_front();
        pipe.reports.pop_front();
        report.resize(std::min<std::size_t>(report.size(), transfer.length));
        answer(Submitted, transfer.sequence, 0, report.size(), report);
    }
}

std::size_t UsbPlug::readerCount() const
{
    return static_cast<std::size_t>(
        std::count_if(pipes_.begin(), pipes_.end(), [](const Pipe &pipe) { return pipe.polled; }));
}

void UsbPlug::complete(const Request &request, const std::vector<uint8_t> &data)
{
    if (!request.in)
        return answer(Submitted, request.sequence, 0, request.length, {});
    const std::size_t size = std::min<std::size_t>(data.size(), request.length);
    answer(Submitted, request.sequence, 0, size, {data.begin(), data.begin() + std::ptrdiff_t(size)});
}

void UsbPlug::refuse(const Request &request) { answer(Submitted, request.sequence, -EPIPE, 0, {}); }

// The controller's thread reads at once, so this write does not block.
void UsbPlug::answer(uint32_t command, uint32_t sequence, int32_t status, std::size_t length,
                     const std::vector<uint8_t> &data)
{
    std::vector<uint8_t> message(HeadSize);
    putWord(&message[0], command);
    putWord(&message[4], sequence);
    putWord(&message[20], static_cast<uint32_t>(status));
    putWord(&message[24], static_cast<uint32_t>(length));
    message.insert(message.end(), data.begin(), data.end());
    for (std::size_t sent = 0; sent < message.size() && !broken_;) {
        const ssize_t size = ::send(socket_.get(), &message[sent], message.size() - sent, MSG_NOSIGNAL);
        if (size > 0)
            sent += static_cast<std::size_t>(size);
        else
            broken_ = size == 0 || errno != EINTR;
    }
}

} // namespace emulator
