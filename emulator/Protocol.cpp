// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/Protocol.h"

#include <cstring>

namespace emulator
{

using wire::Command;

static constexpr CommandRow Rows[] = {
    {Command::Identity, "identity", 0, 0, Route::Device},
    {Command::DriverStatus, "driverstatus", 1, 1, Route::Device},
    {Command::OnLine, "online", 0, 0, Route::Device},
    {Command::Battery, "battery", 0, 0, Route::Mouse},
    {Command::PairEnter, "pairenter", 1, 1, Route::Device},
    {Command::PairStatus, "pairstatus", 0, 0, Route::Device},
    {Command::FlashWrite, "flashwrite", 1, wire::PayloadSize, Route::Mouse},
    {Command::FlashRead, "flashread", 1, 1, Route::Mouse},
    {Command::ClearSettings, "clearsettings", 0, 0, Route::Mouse},
    {Command::PairedAddress, "pairedaddress", sizeof(DonglePairing), sizeof(DonglePairing), Route::Device},
    {Command::BatteryOptimize, "batteryoptimize", 1, 1, Route::Mouse},
    {Command::ConfigSelect, "configselect", 1, 1, Route::Mouse},
    {Command::Config, "config", 0, 0, Route::Mouse},
    {Command::Version, "version", 0, 0, Route::Mouse},
    {Command::SlaveVersion, "slaveversion", 0, 0, Route::Device},
    {Command::DongleColor, "donglecolor", 0, 0, Route::Device},
    {Command::DongleColorWrite, "donglecolorwrite", sizeof(DongleRGB), sizeof(DongleRGB), Route::Device},
    {Command::LongRange, "longrange", 0, 0, Route::Device},
    {Command::LongRangeWrite, "longrangewrite", 1, 1, Route::Device},
    {Command::DongleBar, "donglebar", 0, 0, Route::Device},
    {Command::DongleBarWrite, "donglebarwrite", sizeof(DongleRgbBar), sizeof(DongleRgbBar), Route::Device},
    {Command::Indicator, "indicator", 0, 0, Route::Device},
    {Command::IndicatorWrite, "indicatorwrite", sizeof(DongleIndicator), sizeof(DongleIndicator),
     Route::Device},
    {Command::BootEnter, "bootenter", 1, 1, Route::Device},
    {Command::BootIdentity, "bootidentity", 0, 0, Route::Boot},
    {Command::BootBegin, "bootbegin", sizeof(wire::BootBeginRequest), sizeof(wire::BootBeginRequest),
     Route::Boot},
    {Command::BootData, "bootdata", 1, wire::PayloadSize, Route::Boot},
    {Command::BootEnd, "bootend", 0, 0, Route::Boot},
    {Command::StatusChanged, "statuschanged", 0, wire::PayloadSize, Route::Device},
    {Command::DongleColorChanged, "donglecolorchanged", 0, wire::PayloadSize, Route::Device},
    {Command::LongRangeChanged, "longrangechanged", 0, wire::PayloadSize, Route::Device},
    {Command::OnLineChanged, "onlinechanged", 0, wire::PayloadSize, Route::Device},
};

const CommandRow *findCommand(uint8_t code)
{
    for (const CommandRow &row : Rows) {
        if (static_cast<uint8_t>(row.command) == code)
            return &row;
    }
    return nullptr;
}

const CommandRow *findCommand(const std::string &name)
{
    for (const CommandRow &row : Rows) {
        if (name == row.name)
            return &row;
    }
    return nullptr;
}

static wire::Report makeReport(uint8_t command, uint8_t sequence, const void *payload, std::size_t size)
{
    wire::Report report{};
    report.Id = wire::ReportId;
    report.CommandCode = command;
    report.Sequence = sequence;
    report.Length = static_cast<uint8_t>(size);
    if (size > 0)
        std::memcpy(report.Payload, payload, size);
    wire::seal(report);
    return report;
}

wire::Report makeReply(const wire::Report &request, wire::Status status)
{
    wire::Report report = makeReply(request, nullptr, 0);
    report.StatusCode = static_cast<uint8_t>(status);
    wire::seal(report);
    return report;
}

wire::Report makeReply(const wire::Report &request, const void *payload, std::size_t size)
{
    wire::Report report = makeReport(request.CommandCode, request.Sequence, payload, size);
    report.setAddress(request.address());
    wire::seal(report);
    return report;
}

wire::Report makeNotice(wire::Command command, const void *payload, std::size_t size)
{
    return makeReport(static_cast<uint8_t>(command), 0, payload, size);
}

} // namespace emulator
