// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/panel/PanelState.h"

#include "emulator/Words.h"

#include <QHash>
#include <algorithm>

namespace
{

constexpr int TextLimit = 48;

struct FlagRow {
    const char *key;
    bool PanelDevice::*member;
};
constexpr FlagRow Flags[] = {
    {"plugged", &PanelDevice::plugged}, {"boot", &PanelDevice::boot},
    {"online", &PanelDevice::online},   {"radio", &PanelDevice::radio},
    {"asleep", &PanelDevice::asleep},   {"charging", &PanelDevice::charging},
    {"pairing", &PanelDevice::pairing}, {"pairrefuse", &PanelDevice::refusesPairing},
};

struct NumberRow {
    const char *key;
    int PanelDevice::*member;
    int most;
};
constexpr NumberRow Numbers[] = {
    {"faults", &PanelDevice::faults, 9999},  {"erase", &PanelDevice::erase, 60000},
    {"battery", &PanelDevice::battery, 100}, {"profile", &PanelDevice::profile, 3},
    {"stage", &PanelDevice::stage, 255},     {"stages", &PanelDevice::stages, 255},
    {"rate", &PanelDevice::rate, 8000},      {"pairtime", &PanelDevice::pairTime, 600000},
};

struct TextRow {
    const char *key;
    QString PanelDevice::*member;
};
constexpr TextRow Texts[] = {
    {"class", &PanelDevice::receiverClass},
    {"name", &PanelDevice::name},
    {"version", &PanelDevice::version},
    {"address", &PanelDevice::address},
};

using Values = QHash<QByteArray, QString>;

QString cleanText(const std::string &text)
{
    QString clean;
    for (const QChar c : QString::fromUtf8(text.data(), int(std::min(text.size(), std::size_t(TextLimit))))) {
        if (c.isPrint())
            clean += c;
    }
    return clean;
}

Values readValues(const QByteArray &line)
{
    Values values;
    const auto words = emulator::splitWords(line.toStdString());
    for (const std::string &word : words.value_or(emulator::Words())) {
        const std::size_t sign = word.find('=');
        if (sign != std::string::npos)
            values.insert(QByteArray::fromStdString(word.substr(0, sign)), cleanText(word.substr(sign + 1)));
    }
    return values;
}

PanelDevice readDevice(const Values &values)
{
    PanelDevice device;
    device.id = values.value("device");
    device.isMouse = values.value("kind") == QLatin1String("mouse");
    for (const FlagRow &row : Flags)
        device.*row.member = values.value(row.key) == QLatin1String("1");
    for (const NumberRow &row : Numbers)
        device.*row.member = std::clamp(values.value(row.key).toInt(), 0, row.most);
    for (const TextRow &row : Texts)
        device.*row.member = values.value(row.key);
    return device;
}

bool isDevice(const Values &values)
{
    const QString kind = values.value("kind");
    return emulator::isDeviceId(values.value("device").toStdString()) &&
           (kind == QLatin1String("mouse") || kind == QLatin1String("receiver"));
}

} // namespace

bool PanelDevice::operator==(const PanelDevice &other) const
{
    const auto same = [this, &other](const auto &row) { return this->*row.member == other.*row.member; };
    return id == other.id && isMouse == other.isMouse &&
           std::all_of(std::begin(Flags), std::end(Flags), same) &&
           std::all_of(std::begin(Numbers), std::end(Numbers), same) &&
           std::all_of(std::begin(Texts), std::end(Texts), same);
}

QString profileName(int profile) { return QStringLiteral("Profile %1").arg(profile + 1); }

QString PanelDevice::kindText() const
{
    if (!isMouse)
        return QStringLiteral("%1 receiver").arg(receiverClass);
    return name.isEmpty() ? QStringLiteral("Mouse") : QStringLiteral("Mouse \u201c%1\u201d").arg(name);
}

QString PanelDevice::statusText() const
{
    QString text = plugged ? QStringLiteral("Plugged in") : QStringLiteral("Unplugged");
    if (boot)
        return text + QStringLiteral(", boot loader");
    text += online ? QStringLiteral(", online") : QStringLiteral(", offline");
    if (isMouse && !radio)
        text += QStringLiteral(", radio off");
    return asleep ? text + QStringLiteral(", asleep") : text;
}

QString PanelDevice::detailText() const
{
    if (!isMouse)
        return QStringLiteral("Address %1, version %2").arg(address, version);
    const QString speed = rate > 0 ? QStringLiteral("%1 Hz").arg(rate) : QStringLiteral("no rate");
    return QStringLiteral("%1, stage %2 of %3, %4, address %5")
        .arg(profileName(profile))
        .arg(stage + 1)
        .arg(stages)
        .arg(speed, address);
}

const PanelDevice *PanelState::find(const QString &id) const
{
    const auto found = std::find_if(devices.begin(), devices.end(),
                                    [&id](const PanelDevice &device) { return device.id == id; });
    return found == devices.end() ? nullptr : &*found;
}

const PanelDevice *PanelState::mouseOf(const QString &id) const
{
    const PanelDevice *device = find(id);
    if (device == nullptr || device->isMouse)
        return device;
    const auto mouse = std::find_if(devices.begin(), devices.end(), [device](const PanelDevice &each) {
        return each.isMouse && each.address == device->address;
    });
    return mouse == devices.end() ? nullptr : &*mouse;
}

PanelState parseState(const QList<QByteArray> &lines)
{
    PanelState state;
    for (const QByteArray &line : lines) {
        const Values values = readValues(line);
        if (values.contains("pace"))
            state.pace = values.value("pace") == QLatin1String("1");
        const bool wanted = isDevice(values) && state.devices.size() < PanelState::DeviceLimit;
        if (wanted && state.find(values.value("device")) == nullptr)
            state.devices.append(readDevice(values));
    }
    return state;
}

QByteArray parseFlash(const QList<QByteArray> &lines, int size)
{
    QByteArray image;
    for (const QByteArray &line : lines) {
        const int colon = line.indexOf(':');
        bool isNumber = false;
        if (colon < 0 || line.left(colon).toInt(&isNumber, 16) != image.size() || !isNumber)
            return QByteArray();
        image += QByteArray::fromHex(line.mid(colon + 1));
        if (image.size() > size)
            return QByteArray();
    }
    return image.size() == size ? image : QByteArray();
}
