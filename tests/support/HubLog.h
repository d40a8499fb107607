// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// HubLog: a receiver on the main thread for what the callbacks publish, connected as the pages are. It
// keeps one line for each signal, in order, and the last record.
#pragma once

#include "hub/PostMsg.h"

#include <QStringList>

class HubLog : public QObject
{
    Q_OBJECT

public:
    HubLog()
    {
        const auto blocking = [this](const char *signal, const char *slot) {
            connect(PostMsg::instance(), signal, this, slot, Qt::BlockingQueuedConnection);
        };
        blocking(SIGNAL(SigUpDataConfigUI(int, int, bool)), SLOT(config(int, int, bool)));
        blocking(SIGNAL(SigUpDataLightUIButton(FlashDataMap)), SLOT(button(FlashDataMap)));
        blocking(SIGNAL(SigUpDataLightLight(FlashDataMap)), SLOT(light(FlashDataMap)));
        blocking(SIGNAL(SigUpDataLightSensor(FlashDataMap)), SLOT(sensor(FlashDataMap)));
        blocking(SIGNAL(SigUpDataDPILed(FlashDataMap)), SLOT(dpiLed(FlashDataMap)));
        blocking(SIGNAL(SigUpDataDPI(int)), SLOT(dpi(int)));
        blocking(SIGNAL(SigUpDataReportRate(int)), SLOT(rate(int)));
        blocking(SIGNAL(SigBattery(bool, int, bool)), SLOT(battery(bool, int, bool)));
        blocking(SIGNAL(SigRGBValue(DongleRGB *)), SLOT(color(DongleRGB *)));
        blocking(SIGNAL(SigLongRangeMode(bool)), SLOT(longRange(bool)));
        blocking(SIGNAL(SigForm()), SLOT(form()));
        blocking(SIGNAL(SigFormReset()), SLOT(formReset()));
        const auto plain = [this](const char *signal, const char *slot) {
            connect(PostMsg::instance(), signal, this, slot);
        };
        plain(SIGNAL(SigIsUsb(bool, bool)), SLOT(isUsb(bool, bool)));
        plain(SIGNAL(SigSetver(int)), SLOT(setVer(int)));
        plain(SIGNAL(SigUpDataParam(int)), SLOT(wait(int)));
        plain(SIGNAL(SigChangeMainDialog(int)), SLOT(page(int)));
        plain(SIGNAL(SigLabelTextB(QString, QString)), SLOT(labels(QString, QString)));
        plain(SIGNAL(SigCloseOffOnline()), SLOT(closeNotice()));
        plain(SIGNAL(SigCheckUpdate()), SLOT(checkUpdate()));
    }

    QStringList lines;
    FlashDataMap record{};

public slots:
    void config(int total, int index, bool enable)
    {
        add(QStringLiteral("config %1 %2 %3").arg(total).arg(index).arg(enable));
    }
    void button(FlashDataMap map) { take(QStringLiteral("button"), map); }
    void light(FlashDataMap map) { take(QStringLiteral("light"), map); }
    void sensor(FlashDataMap map) { take(QStringLiteral("sensor"), map); }
    void dpiLed(FlashDataMap map) { take(QStringLiteral("dpiled"), map); }
    void dpi(int index) { add(QStringLiteral("dpi %1").arg(index)); }
    void rate(int index) { add(QStringLiteral("rate %1").arg(index)); }
    void battery(bool charging, int level, bool text)
    {
        add(QStringLiteral("battery %1 %2 %3").arg(charging).arg(level).arg(text));
    }
    void color(DongleRGB *rgb) { add(QStringLiteral("color %1").arg(rgb->Scheme)); }
    void longRange(bool on) { add(QStringLiteral("longrange %1").arg(on)); }
    void form() { add(QStringLiteral("form")); }
    void formReset() { add(QStringLiteral("formreset")); }
    void isUsb(bool usb, bool visible) { add(QStringLiteral("usb %1 %2").arg(usb).arg(visible)); }
    void setVer(int index) { add(QStringLiteral("setver %1").arg(index)); }
    void wait(int index) { add(QStringLiteral("wait %1").arg(index)); }
    void page(int index) { add(QStringLiteral("page %1").arg(index)); }
    void labels(QString a, QString b) { add(QStringLiteral("labels %1 %2").arg(a, b)); }
    void closeNotice() { add(QStringLiteral("closenotice")); }
    void checkUpdate() { add(QStringLiteral("checkupdate")); }

private:
    void add(const QString &line) { lines.append(line); }
    void take(const QString &name, const FlashDataMap &map)
    {
        record = map;
        add(name);
    }
};
