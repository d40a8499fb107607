// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// UsbPlug: one plugged-in USB device, as the kernel's virtual host controller sees it. The controller sends
// USB requests over a stream socket and takes their answers there; closing the socket pulls the plug. One
// thread.
#pragma once

#include "emulator/DeviceBus.h"
#include "emulator/FileDescriptor.h"
#include "emulator/usb/Descriptors.h"

#include <deque>

namespace emulator
{

class UsbPlug
{
public:
    // `interfaces` are those of one device; `socket` is the device's end.
    UsbPlug(std::vector<Interface> interfaces, FileDescriptor socket);

    const std::vector<Interface> &interfaces() const { return interfaces_; }
    int file() const { return socket_.get(); }
    // Answers received requests; reports go to `handler`. False when the controller closed the socket.
    bool service(const DeviceBus::Handler &handler);
    // Sends a report to the readers of the interface. Without a reader the host does not poll the endpoint
    // and the report is lost, as is one that exceeds the queue.
    void send(uint16_t usagePage, const std::vector<uint8_t> &bytes);
    // Interfaces that the host polls.
    std::size_t readerCount() const;

private:
    struct Request {
        uint32_t sequence = 0;
        uint32_t endpoint = 0;
        bool in = false;
        uint32_t length = 0;
        const uint8_t *setup = nullptr;
        const uint8_t *data = nullptr; // of an OUT request, `length` bytes
    };
    struct Waiting {
        uint32_t sequence;
        uint32_t length;
    };
    struct Pipe {
        bool polled = false;
        std::deque<Waiting> transfers;            // that wait for a report
        std::deque<std::vector<uint8_t>> reports; // that wait for a transfer
    };

    bool receive();
    bool takeRequests(const DeviceBus::Handler &handler);
    void submit(const Request &request, const DeviceBus::Handler &handler);
    void control(const Request &request, const DeviceBus::Handler &handler);
    const std::vector<uint8_t> *descriptor(const uint8_t *setup) const;
    void takeReport(const UsbFace &face, const Request &request, const DeviceBus::Handler &handler);
    void unlink(uint32_t sequence, uint32_t unlinked);
    void pump(Pipe &pipe);
    void complete(const Request &request, const std::vector<uint8_t> &data);
    void refuse(const Request &request);
    void answer(uint32_t command, uint32_t sequence, int32_t status, std::size_t length,
                const std::vector<uint8_t> &data);

    std::vector<Interface> interfaces_;
    UsbDescription usb_;
    FileDescriptor socket_;
    std::vector<uint8_t> input_;
    std::vector<Pipe> pipes_; // the IN endpoint of each face
    bool broken_ = false;
};

} // namespace emulator
