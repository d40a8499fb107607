// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "sensor/SensorLOD.h"

#include "device/DeviceState.h"
#include "device/WriteFamily.h"
#include "hub/PostMsg.h"
#include "presentation/Edit.h"
#include "presentation/FirstShow.h"
#include "presentation/SkinPalette.h"
#include "presentation/StyleSheets.h"
#include "presentation/language/LanguageTables.h"
#include "sensor/Tip.h"
#include "ui_SensorLOD.h"

namespace
{

constexpr int AllHeights = int(LodRows.size());

QString heightText(int row) { return QLatin1String(LodRows[std::size_t(row)].text); }

} // namespace

SensorLOD::SensorLOD(QWidget *parent) : QFrame(parent), ui(std::make_unique<Ui::SensorLOD>())
{
    ui->setupUi(this);
    onFirstShow(this, [this] { applyStyle(); });
}

SensorLOD::~SensorLOD() = default;

void SensorLOD::applyStyle()
{
    ui->caption->setStyleSheet(style::label(style::color("LabelColor")));
    styleComboBox(ui->LOD, style::pictureFolder(QStringLiteral("Sensor")));
    styleTip(ui->tip);
}

// Index into LodRows of the first item of the box.
int SensorLOD::firstRow() const { return AllHeights - ui->LOD->count(); }

// A height that the box does not offer gives -1 or an index behind the last item.
int SensorLOD::indexOf(int value) const
{
    if (ui->LOD->count() < AllHeights)
        return value;
    for (int i = 0; i < AllHeights; ++i)
        if (LodRows[std::size_t(i)].code == value + 1)
            return i;
    return -1;
}

void SensorLOD::showIndex(int index)
{
    const QSignalBlocker silent(ui->LOD);
    ui->LOD->setCurrentIndex(index);
}

void SensorLOD::AddSmallLod()
{
    const QSignalBlocker silent(ui->LOD);
    if (ui->LOD->count() == AllHeights - 1)
        ui->LOD->insertItem(0, heightText(0));
}

void SensorLOD::RemoveSmallLod()
{
    const QSignalBlocker silent(ui->LOD);
    if (ui->LOD->count() == AllHeights)
        ui->LOD->removeItem(0);
}

void SensorLOD::SetLod(int value)
{
    lastValue_ = value;
    const bool offersAll = ui->LOD->count() == AllHeights;
    const int index = indexOf(value);
    if (offersAll && index < 0)
        return;
    showIndex(index);
    const int row = offersAll ? index : value == 0 ? 1 : 2;
    emit PostMsg::instance()->SigAddLOD(heightText(row));
}

void SensorLOD::on_LOD_currentIndexChanged(int index)
{
    if (index < 0)
        return;
    const LodRow &row = LodRows[firstRow() + index];
    if (edit(
            SensorPageBusy, ui->LOD, [&row] { return SetLiftOffDistance(row.code); },
            [this] { showIndex(indexOf(lastValue_)); }) != EditResult::Written)
        return;
    lastValue_ = row.code - 1;
    emit PostMsg::instance()->SigAddLOD(QLatin1String(row.text));
}

void SensorLOD::setLodEnabled(bool enabled) { ui->LOD->setEnabled(enabled); }

void SensorLOD::SlotAllLanguage(int index)
{
    using namespace language;
    const QString caption = text(Section::sensor, "LOD", index);
    if (!caption.isEmpty())
        ui->caption->setText(caption);
    setTip(ui->tip, ui->LOD, text(Section::sensor, "LODTips", index));
}
