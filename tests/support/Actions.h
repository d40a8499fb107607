// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// What the tests of the actions compare with: the widgets with their bytes and texts, written down apart
// from the program's own table, a language whose texts tell their keys, and slots.
#pragma once

#include "binding/actions/BindingDecoder.h"
#include "binding/actions/BindingEncoder.h"
#include "catalogue/DpiCodes.h"
#include "presentation/language/LanguageTables.h"
#include "tests/support/ProductFolder.h"

#include <cstring>

namespace support
{

constexpr int Loaded = 0; // the language whose texts tell their keys
constexpr int Missing = 1;

struct Golden {
    const char *widget;
    const char *place; // page it stands on
    const char *bytes; // of the binding
    const char *code;  // of a sequence's events, as it lies in memory
    const char *text;  // until a language gives one
    const char *key;   // in KeyOptions, or with "M" in front, of the mouse buttons; empty: none
};
constexpr Golden Table[] = {
    {"LeftKey_3", "page_2", "010100", "", "左键", "M2"},
    {"RightKey_3", "page_2", "010200", "", "右键", "M3"},
    {"MidKey", "page_2", "010400", "", "中键", "M4"},
    {"BackKey_2", "page_2", "010800", "", "后退键", "M6"},
    {"ForWardKey", "page_2", "011000", "", "前进键", "M5"},
    {"DPI_2", "page_2", "070000", "", "切换报告率", "7"},
    {"DPI_3", "page_2", "090000", "", "配置切换", "9"},
    {"DPI_6", "page_2", "040a03", "", "火力键", "4"},
    {"DPI_8", "page_2", "", "", "组合键", "5"},
    {"DPI_5", "page_2", "000000", "", "待定义按键", "10"},
    {"DPI_13", "page_2", "", "", "上下滚动", "B"},
    {"DPI_11", "page_2", "", "", "左右滚动", "3"},
    {"DPI_4", "page_2", "", "", "DPI锁定", "12"},
    {"DPI_9", "page_2", "", "", "灯光", "11"},
    {"DPI_7", "page_2", "", "", "DPI切换", "2"},
    {"DPI_12", "page_2", "", "", "多媒体", "1005"},
    {"DPI_10", "page_2", "", "", "宏", "6"},
    {"VolumeUp_14", "page_10", "0b0100", "", "上滚", "ScrollUp"},
    {"VolumeDown_14", "page_10", "0b0200", "", "下滚", "ScrollDown"},
    {"VolumeUp_2", "page_4", "030100", "", "左滚", "ScrollLeft"},
    {"VolumeDown_2", "page_4", "030200", "", "右滚", "ScrollRight"},
    {"VolumeUp_11", "page_8", "0a0100", "", "100", ""},
    {"VolumeUp_12", "page_8", "0a0300", "", "200", ""},
    {"VolumeUp_13", "page_8", "0a0500", "", "300", ""},
    {"VolumeUp_16", "page_8", "0a0700", "", "400", ""},
    {"VolumeUp_15", "page_8", "0a0900", "", "500", ""},
    {"VolumeUp_19", "page_8", "0a0b00", "", "600", ""},
    {"VolumeUp_20", "page_8", "0a0d00", "", "700", ""},
    {"VolumeUp_22", "page_8", "0a0f00", "", "800", ""},
    {"VolumeUp_18", "page_8", "0a1100", "", "900", ""},
    {"VolumeUp_24", "page_8", "0a1300", "", "1000", ""},
    {"VolumeUp_23", "page_8", "0a1500", "", "1100", ""},
    {"VolumeUp_21", "page_8", "0a1700", "", "1200", ""},
    {"VolumeUp_4", "page_6", "080000", "", "开/关所有装饰灯", "13"},
    {"VolumeUp_5", "page_6", "080100", "", "开/关DPI指示灯", "14"},
    {"VolumeUp_6", "page_6", "080300", "", "开/关灯带", "15"},
    {"VolumeUp_7", "page_6", "080400", "", "循环切换灯带效果", "16"},
    {"VolumeUp_8", "page_7", "020100", "", "DPI循环", "DPICycle"},
    {"VolumeUp_9", "page_7", "020200", "", "DPI+", "DPI+"},
    {"VolumeUp_10", "page_7", "020300", "", "DPI-", "DPI-"},
    {"Player", "page_3", "050000", "8301", "播放器", "0x0183"},
    {"StartPause_2", "page_3", "050000", "cd00", "播放/暂停", "0x00CD"},
    {"BackMusic_2", "page_3", "050000", "b500", "下一曲", "0x00B5"},
    {"TopMusic_2", "page_3", "050000", "b600", "上一曲", "0x00B6"},
    {"Mute", "page_3", "050000", "b700", "停止播放", "0x00B7"},
    {"VolumeUp", "page_3", "050000", "e200", "静音", "0x00E2"},
    {"VolumeDown", "page_3", "050000", "e900", "音量加", "0x00E9"},
    {"VolumeDown_4", "page_3", "050000", "ea00", "音量减", "0x00EA"},
    {"VolumeDown_5", "page_3", "050000", "8a01", "邮件", "0x018A"},
    {"VolumeDown_6", "page_3", "050000", "9201", "计算器", "0x0192"},
    {"VolumeDown_3", "page_3", "050000", "9401", "我的电脑", "0x0194"},
    {"VolumeDown_8", "page_3", "050000", "2302", "主页", "0x0223"},
    {"VolumeDown_9", "page_3", "050000", "2102", "搜索", "0x0221"},
    {"VolumeDown_7", "page_3", "050000", "2502", "前进", "0x0225"},
    {"VolumeDown_10", "page_3", "050000", "2402", "后退", "0x0224"},
    {"VolumeDown_12", "page_3", "050000", "2602", "停止网页", "0x0226"},
    {"VolumeDown_13", "page_3", "050000", "2702", "刷新", "0x0227"},
    {"VolumeDown_11", "page_3", "050000", "2a02", "收藏夹", "0x022A"},
};
inline const SensorCodes NoTable{{}, {}, QStringLiteral("3395")};
// A table with a code for 400 DPI and one for 800, and another sensor's.
inline const SensorCodes SmallTable{{QStringLiteral("SENSOR_PA42_DPI_400"),
                                     QStringLiteral("SENSOR_PA42_DPI_800"),
                                     QStringLiteral("SENSOR_PB_DPI_1200")},
                                    {9, 0x13, 0x42},
                                    QStringLiteral("PA42")};

template <typename Record> QByteArray hex(const Record &record)
{
    return QByteArray(reinterpret_cast<const char *>(&record), sizeof record).toHex();
}

inline const Golden &goldenOf(const QString &widget)
{
    for (const Golden &row : Table)
        if (widget == QLatin1String(row.widget))
            return row;
    qFatal("no such widget");
}

inline QString loadedText(const char *widget)
{
    const Golden &row = goldenOf(QString::fromLatin1(widget));
    return *row.key ? QStringLiteral("T") + QString::fromLatin1(row.key) : QString::fromUtf8(row.text);
}

// A language whose texts tell under which key each was found.
inline QByteArray tellingLanguage()
{
    QByteArrayList functions, mouse;
    for (const Golden &row : Table) {
        const QByteArray key(row.key);
        if (key.startsWith('M'))
            mouse << "{\"command\":" + key.mid(1) + ",\"option\":\"T" + key + "\"}";
        else if (!key.isEmpty())
            functions << "{\"value\":\"" + key + "\",\"label\":\"T" + key + "\"}";
    }
    return "{\"mouse\":{\"key\":{\"KeyOptions\":[" + functions.join(',') +
           "]},\"macro\":{\"MacroSeond\":\"Macro \",\"InsertEventOptions\":[" + mouse.join(',') + "]}}}";
}

// A slot of its own.
struct Slot {
    KeyBinding binding{};
    KeySequence sequence{};
    MacroBlock macro{};

    binding::DecodedBinding decode(const SensorCodes &sensor = NoTable, int language = Loaded) const
    {
        return binding::decodeBinding({binding, sequence, macro}, sensor, language);
    }
};

inline QString widgetOf(const binding::ActionRow *row)
{
    return row ? QString::fromLatin1(row->widget) : QString();
}

// The small catalogue with that language.
struct TellingProduct : ProductFolder {
    TellingProduct() : ProductFolder(smallCatalogue())
    {
        QDir(path(QString())).mkpath(QStringLiteral("Language"));
        QFile file(path(QStringLiteral("Language/en.json")));
        if (file.open(QIODevice::WriteOnly))
            file.write(tellingLanguage());
        file.close();
        LoadLanguageTables();
    }
};

} // namespace support
