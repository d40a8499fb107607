// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// PanelFixture: the emulator's panel on an emulator in this process, with what its tests ask of both.
#pragma once

#include "emulator/Emulator.h"
#include "emulator/panel/PanelLook.h"
#include "emulator/panel/PanelWindow.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestMain.h"
#include "tests/support/UsbIdsLine.h"

#include <QApplication>
#include <QtTest>

class PanelFixture : public QObject
{
protected:
    std::unique_ptr<TempFolder> folder;
    std::unique_ptr<emulator::Emulator> emulated;
    std::unique_ptr<PanelWindow> window;

    template <typename Widget> Widget *part(const char *name) const
    {
        auto *found = window->findChild<Widget *>(QLatin1String(name));
        if (found == nullptr)
            qFatal("no %s", name);
        return found;
    }
    QString bus() const { return QString::fromStdString(folder->path()); }
    QString stateText() const { return part<QLabel>("stateLabel")->text(); }
    int rows() const { return part<QListView>("deviceList")->model()->rowCount(); }
    void open()
    {
        window = std::make_unique<PanelWindow>(bus());
        window->show();
    }
    void startEmulator()
    {
        emulated = std::make_unique<emulator::Emulator>();
        std::string error;
        QVERIFY2(emulated->loadText(std::string(UsbIdsLine) + Scenario, "scenario", error), error.c_str());
        QVERIFY2(emulated->start(folder->path(), error), error.c_str());
    }
    void openOnEmulator()
    {
        startEmulator();
        open();
        QTRY_COMPARE(rows(), 3);
    }
    void choose(const char *id)
    {
        auto *list = part<QListView>("deviceList");
        for (int row = 0; row < rows(); ++row) {
            if (list->model()->index(row, 0).data().toString() == QLatin1String(id))
                QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier,
                                  list->visualRect(list->model()->index(row, 0)).center());
        }
        QTRY_VERIFY(part<QGroupBox>("deviceControls")->findChild<QLabel *>("heading")->text().startsWith(id));
    }
    void click(const char *name)
    {
        auto *button = part<QAbstractButton>(name);
        QTRY_VERIFY(button->isEnabled());
        QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, QPoint(10, button->height() / 2));
    }
    PanelDevice shown(const char *id) const
    {
        const auto *model = part<QListView>("deviceList")->model();
        for (int row = 0; row < model->rowCount(); ++row) {
            const auto device = model->index(row, 0).data(DeviceModel::DeviceRole).value<PanelDevice>();
            if (device.id == QLatin1String(id))
                return device;
        }
        return PanelDevice();
    }
    static void pickText(QComboBox *box, const char *text)
    {
        box->setCurrentIndex(box->findText(QLatin1String(text)));
        QCOMPARE(box->currentText(), QString(text));
    }

    // Before and behind each test.
    void begin() { folder = std::make_unique<TempFolder>(); }
    void end()
    {
        window.reset();
        emulated.reset();
        folder.reset();
    }

private:
    static constexpr const char *Scenario = R"(
mouse air name "Six" cid 18 mid 6 version 1.05 battery 80
receiver rx class 8k mouse air version 1.02 address a10001
mouse wired name "A name of many letters" cid 18 mid 8 battery 100
plug rx
)";
};

struct PanelSetUp : testmain::WidgetApplication {
    PanelSetUp(int &argc, char **argv) : WidgetApplication(argc, argv)
    {
        QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 9));
        look::apply(application, QStringLiteral(PRODUCT_FOLDER "/Picture"));
    }
};
