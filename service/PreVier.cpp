// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "service/PreVier.h"

#include "device/DeviceRecord.h"
#include "device/DeviceState.h"
#include "device/ImageCache.h"
#include "device/hidusb/HIDUsb.h"
#include "hub/PostMsg.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/LanguageTables.h"
#include "ui_PreVier.h"

namespace
{

constexpr int FirstPictureMid = 6;

// The names that the language tables hold; the others stay as in the form.
struct NameRow {
    const char *label;
    language::Section section;
    const char *key;
};
constexpr NameRow Names[] = {
    {"ReportName", language::Section::sensor, "ReportRate"},
    {"MotionName", language::Section::key, "DebounceTime"},
    {"ConfigName", language::Section::key, "configName"},
    {"MouseVer", language::Section::Settings, "MouseVersion"},
    {"DongleVer", language::Section::Settings, "DongleVersion"},
};

} // namespace

PreVier::PreVier(QWidget *parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::PreVier>())
    , pictures_(style::pictureFolder(QStringLiteral("Buttoninterface")))
{
    ui->setupUi(this);
    applyStyle();
    connectSignals();
    SlotAllLanguage(LanguageIndex);
}

PreVier::~PreVier() = default;

void PreVier::applyStyle()
{
    const QString ink = style::label(style::color("LabelColor"));
    for (QLabel *label : findChildren<QLabel *>())
        label->setStyleSheet(ink);
    for (QLabel *mark : {ui->MouseUp, ui->DongleUp}) {
        mark->setStyleSheet(style::labelPicture(pictures_, QStringLiteral("IsData.png")));
        mark->hide();
    }
}

// The hub has no signals for four of the slots, and the toolkit says so.
void PreVier::connectSignals()
{
    PostMsg *hub = PostMsg::instance();
    connect(hub, SIGNAL(SigAllLanguage(int)), this, SLOT(SlotAllLanguage(int)));
    connect(hub, SIGNAL(SigAddSensor(int)), this, SLOT(SlotAddSensor(int)));
    connect(hub, SIGNAL(SigAddReport(int)), this, SLOT(SlotAddReport(int)));
    connect(hub, SIGNAL(SigAddLOD(QString)), this, SLOT(SlotAddLOD(QString)));
    connect(hub, SIGNAL(SigAddConfig(QString)), this, SLOT(SlotAddConfig(QString)));
    connect(hub, SIGNAL(SigAddMotion(int)), this, SLOT(SlotAddMotion(int)));
    connect(hub, SIGNAL(SigAddMouseVer(QString)), this, SLOT(SlotAddMouseVer(QString)));
    connect(hub, SIGNAL(SigAddDongleVer(QString)), this, SLOT(SlotAddDongleVer(QString)));
    connect(hub, SIGNAL(SigAddBatteryVis(bool)), this, SLOT(SlotAddBatteryVis(bool)));
    connect(hub, SIGNAL(SigDebunce(QString)), this, SLOT(SlotDebnunce(QString)));
    connect(hub, SIGNAL(SigAddVer(int, QString)), this, SLOT(SlotAddVer(int, QString)));
    connect(hub, SIGNAL(SigAddUpdate(int, bool)), this, SLOT(SlotAddUpdate(int, bool)));
    connect(hub, SIGNAL(SigMouseIndex(int)), this, SLOT(SlotMouseIndex(int)));
}

void PreVier::SlotAllLanguage(int index)
{
    for (const NameRow &row : Names) {
        const QString name = language::text(row.section, row.key, index);
        if (!name.isEmpty())
            findChild<QLabel *>(QLatin1String(row.label))->setText(name);
    }
}

void PreVier::SlotAddSensor(int Value) { ui->DpiValue->setText(QString::number(Value)); }

void PreVier::SlotAddReport(int Value)
{
    ui->ReportValue->setText(QString::number(Value) + QStringLiteral("Hz"));
}

void PreVier::SlotAddLOD(const QString &Value) { ui->LodValue->setText(Value); }

void PreVier::SlotAddConfig(const QString &Value) { ui->ConfigValue->setText(Value); }

void PreVier::SlotAddMouseVer(const QString &Value) { ui->MouseValue->setText(Value); }

void PreVier::SlotAddDongleVer(const QString &Value) { ui->DongleValue->setText(Value); }

void PreVier::SlotDebnunce(const QString &Vlue) { ui->DebunceValue->setText(Vlue); }

void PreVier::SlotAddVer(int type, const QString &Ver)
{
    if (type == 0)
        SlotAddMouseVer(Ver);
    else if (type == 1)
        SlotAddDongleVer(Ver);
}

void PreVier::SlotAddUpdate(int type, bool Ver)
{
    if (type == 0)
        ui->MouseUp->setVisible(Ver);
    else if (type == 1)
        ui->DongleUp->setVisible(Ver);
}

void PreVier::SlotMouseIndex(int index)
{
    ui->widget->setStyleSheet(
        style::stretchedPicture(pictures_, QStringLiteral("mouse%1.png").arg(index - FirstPictureMid)));
}

void PreVier::on_UpArrow_clicked()
{
    UsbServer_SetPCDriverStatus(0);
    ImageCacheWrite(SelectedDevice::imageName(), DeviceRecord::copy());
    UsbServer_Exit();
    emit PostMsg::instance()->SigChangeMainDialog(0);
    emit PostMsg::instance()->SigSetMacroPage();
}
