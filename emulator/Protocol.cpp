// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/Protocol.h"

#include <cstring>

namespace emulator
{

using wire::Command;

static constexpr CommandRow Rows[] = {
    {"identity", Command::Identity, 0, 0, Route::Device},
    {"driverstatus", Command::DriverStatus, 1, 1, Route::Device},
    {"online", Command::OnLine, 0, 0, Route::Device},
    {"battery", Command::Battery, 0, 0, Route::Mouse},
    {"pairenter", Command::PairEnter, 1, 1, Route::Device},
    {"pairstatus", Command::PairStatus, 0, 0, Route::Device},
    {"flashwrite", Command::FlashWrite, 1, wire::PayloadSize, Route::Mouse},
    {"flashread", Command::FlashRead, 1, 1, Route::Mouse},
    {"clearsettings", Command::ClearSettings, 0, 0, Route::Mouse},
    {"pairedaddress", Command::PairedAddress, sizeof(DonglePairing), sizeof(DonglePairing), Route::Device},
    {"batteryoptimize", Command::BatteryOptimize, 1, 1, Route::Mouse},
    {"configselect", Command::ConfigSelect, 1, 1, Route::Mouse},
    {"config", Command::Config, 0, 0, Route::Mouse},
    {"version", Command::Version, 0, 0, Route::Mouse},
    {"slaveversion", Command::SlaveVersion, 0, 0, Route::Device},
    {"donglecolor", Command::DongleColor, 0, 0, Route::Device},
    {"donglecolorwrite", Command::DongleColorWrite, sizeof(DongleRGB), sizeof(DongleRGB), Route::Device},
    {"longrange", Command::LongRange, 0, 0, Route::Device},
    {"longrangewrite", Command::LongRangeWrite, 1, 1, Route::Device},
    {"donglebar", Command::DongleBar, 0, 0, Route::Device},
    {"donglebarwrite", Command::DongleBarWrite, sizeof(DongleRgbBar), sizeof(DongleRgbBar), Route::Device},
    {"indicator", Command::Indicator, 0, 0, Route::Device},
    {"indicatorwrite", Command::IndicatorWrite, sizeof(DongleIndicator), sizeof(DongleIndicator),
     Route::Device},
    {"bootenter", Command::BootEnter, 1, 1, Route::Device},
    {"bootidentity", Command::BootIdentity, 0, 0, Route::Boot},
    {"bootbegin", Command::BootBegin, sizeof(wire::BootBeginRequest), sizeof(wire::BootBeginRequest),
     Route::Boot},
    {"bootdata", Command::BootData, 1, wire::PayloadSize, Route::Boot},
    {"bootend", Command::BootEnd, 0, 0, Route::Boot},
    {"bootleave", Command::BootLeave, 0, 0, Route::Boot},
    {"statuschanged", Command::StatusChanged, 0, wire::PayloadSize, Route::Device},
    {"donglecolorchanged", Command::DongleColorChanged, 0, wire::PayloadSize, Route::Device},
    {"longrangechanged", Command::LongRangeChanged, 0, wire::PayloadSize, Route::Device},
    {"onlinechanged", Command::OnLineChanged, 0, wire::PayloadSize, Route::Device},
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
