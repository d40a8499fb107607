// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "environment/DesktopSettings.h"

#include <memory>

#include "environment/XDisplay.h"

namespace
{

constexpr long MostWords = 65536; // of the property
enum class SettingType : uint8_t { Number, Text, Color };
constexpr int ColorSize = 8;

struct PropertyFreer {
    void operator()(unsigned char *bytes) const { XFree(bytes); }
};

// Fields in the byte order that the first byte says, none behind the end.
class Fields
{
public:
    explicit Fields(const QByteArray &bytes) : bytes_(bytes)
    {
        bigEndian_ = number(1) == 1;
        skip(3);
    }

    bool ended() const { return ended_; }
    quint32 number(int size)
    {
        const QByteArray field = take(size);
        quint32 value = 0;
        for (int i = 0; i < field.size(); ++i)
            value = value << 8 | quint8(field[bigEndian_ ? i : field.size() - 1 - i]);
        return value;
    }
    QByteArray padded(quint32 size)
    {
        QByteArray field = take(size);
        skip((4 - size % 4) % 4);
        return field;
    }
    void skip(quint32 size) { take(size); }

private:
    QByteArray take(quint32 size)
    {
        if (ended_ || size > quint32(bytes_.size() - at_)) {
            ended_ = true;
            return {};
        }
        at_ += int(size);
        return bytes_.mid(at_ - int(size), int(size));
    }

    QByteArray bytes_;
    int at_ = 0;
    bool ended_ = false;
    bool bigEndian_ = false;
};

} // namespace

QByteArray desktopSettings()
{
    const QuietErrors quiet;
    const XDisplay display = openDisplay();
    if (!display)
        return {};
    const auto atom = [&](const char *name) { return XInternAtom(display.get(), name, False); };
    const Window owner = XGetSelectionOwner(display.get(), atom("_XSETTINGS_S0"));
    if (owner == None)
        return {};
    Atom type = None;
    int format = 0;
    unsigned long count = 0;
    unsigned long left = 0;
    unsigned char *data = nullptr;
    XGetWindowProperty(display.get(), owner, atom("_XSETTINGS_SETTINGS"), 0, MostWords, False,
                       AnyPropertyType, &type, &format, &count, &left, &data);
    const std::unique_ptr<unsigned char, PropertyFreer> freed(data);
    return format == 8 ? QByteArray(reinterpret_cast<const char *>(data), int(count)) : QByteArray();
}

std::optional<int> desktopNumber(const QByteArray &settings, const QByteArray &name)
{
    Fields fields(settings);
    fields.skip(4); // serial number
    for (quint32 left = fields.number(4); left > 0 && !fields.ended(); --left) {
        const auto type = SettingType(fields.number(1));
        fields.skip(1);
        const QByteArray key = fields.padded(fields.number(2));
        fields.skip(4); // serial number of its last change
        if (type == SettingType::Text) {
            fields.padded(fields.number(4));
        } else if (type == SettingType::Color) {
            fields.skip(ColorSize);
        } else if (type != SettingType::Number) {
            return std::nullopt;
        } else if (const quint32 value = fields.number(4); key == name && !fields.ended()) {
            return int(value);
        }
    }
    return std::nullopt;
}
