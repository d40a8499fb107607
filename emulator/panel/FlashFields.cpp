// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "emulator/panel/FlashView.h"

#include "device/hidusb/wire/FlashLayout.h"

#include <algorithm>

namespace
{

struct FieldRow {
    const char *name;
    std::size_t address;
    std::size_t size;
    int count; // of the same kind, one behind the other
};

#define FIELD(name, member)                                                                                  \
    {                                                                                                        \
        name, offsetof(FlashImage, member), sizeof(FlashImage::member), 1                                    \
    }
constexpr FieldRow Rows[] = {
    FIELD("Report rate", ReportRate),
    FIELD("DPI stages in use", DpiStageCount),
    FIELD("KFps", KFps),
    FIELD("Current DPI stage", CurrentDpiStage),
    FIELD("Lift-off distance", LiftOffDistance),
    FIELD("Debounce", DebounceTime),
    FIELD("Motion sync", MotionSync),
    FIELD("Sleep time", StopCloseTime),
    FIELD("Angle snapping", StraightLine),
    FIELD("Ripple control", RippeControl),
    FIELD("Lights off moving", LightRippeControl),
    FIELD("Performance", Performance),
    FIELD("Performance time", PerformanceOpen),
    FIELD("Sensor mode", ModelChoose),
    FIELD("Angle", AngleSet),
    FIELD("Angle is set", AngleSetValid),
    {"DPI stage", offsetof(FlashImage, DpiStages), sizeof(DpiStage), DpiStageLimit},
    FIELD("Indicator mode", DpiLedMode),
    FIELD("Indicator brightness", DpiLedBrightness),
    FIELD("Indicator speed", DpiLedSpeed),
    FIELD("Indicator on", DpiLedEnable),
    {"Key", offsetof(FlashImage, KeyBindings), sizeof(KeyBinding), KeySlotCount},
    FIELD("Bar mode", LedBarMode),
    {"Bar colour", offsetof(FlashImage, LedBarRed), 3, 1},
    FIELD("Bar speed", LedBarSpeed),
    FIELD("Bar brightness", LedBarBrightness),
    FIELD("Bar on", LedBarEnable),
    FIELD("Mouse's own", MouseOwn),
    {"Sequence", offsetof(FlashImage, KeySequences), sizeof(FlashSequence), KeySlotCount},
    {"Macro", offsetof(FlashImage, MacroBlocks), sizeof(FlashMacro), KeySlotCount},
};
#undef FIELD

QVector<FlashField> makeFields()
{
    QVector<FlashField> fields;
    for (const FieldRow &row : Rows) {
        for (int i = 0; i < row.count; ++i) {
            QString name = QLatin1String(row.name);
            if (row.count > 1)
                name += QStringLiteral(" %1").arg(i + 1);
            fields.append({name, int(row.address + row.size * std::size_t(i)), int(row.size)});
        }
    }
    return fields;
}

} // namespace

const QVector<FlashField> &flashFields()
{
    static const QVector<FlashField> fields = makeFields();
    return fields;
}

int flashFieldAt(int address)
{
    const auto &fields = flashFields();
    const auto found = std::find_if(fields.begin(), fields.end(), [address](const FlashField &field) {
        return address >= field.address && address < field.address + field.size;
    });
    return found == fields.end() ? -1 : int(found - fields.begin());
}
