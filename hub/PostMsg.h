// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// PostMsg: the signals by which the worker, the callbacks and the pages reach each other. It holds no data.
//
// The delivery is part of the thread design. A signal marked "blocking" is emitted off the main thread only,
// and its receivers connect with Qt::BlockingQueuedConnection: the argument stays on the emitter's
// stack while the main thread runs the slot. Emitting one on the main thread would wait for itself.
// Receivers of all others connect with the default; those that cross threads carry int, bool or
// QString alone, since FlashDataMap, DeviceAllInfo and DongleRGB * are no registered meta types.
// Receivers connect in their constructors, by SIGNAL and SLOT.
#pragma once

#include "device/record/DeviceAllInfo.h"

#include <QObject>

class PostMsg : public QObject
{
    Q_OBJECT

public:
    // The instance, without a parent and never deleted. The first call comes on the main thread.
    static PostMsg *instance();
    // Forgets the instance; the object itself stays. The next instance() makes another.
    static void clear();

signals:
    void SigChangeMainDialog(int index);
    void SigChangeSize(int index);
    void SigUpDataConfigUI(int ToTalItem, int SelectIndex, bool ItemEnable); // blocking
    void SigUpDataLightUIButton(FlashDataMap DataMap);                       // blocking
    void SigUpDataLightLight(FlashDataMap DataMap);                          // blocking
    void SigUpDataLightSensor(FlashDataMap DataMap);                         // blocking
    void SigUpDataLightUIA(FlashDataMap DataMap);
    void SigUpDataSensorUIB(FlashDataMap DataMap);
    void SigUpDataButtonUIC(FlashDataMap DataMap);
    void SigButtonToMacro(FlashDataMap DataMap, int KeyNumer);
    void SigUpDataDPILed(FlashDataMap DataMap); // blocking
    void SigMouseOffLineo(int index);
    void SigMainPageChange();
    void SigSecondPageChange();
    void SigSelectMouseInfo(DeviceAllInfo SelectInfo);
    void SigUpPageLight();
    void SigAddMacroButton();
    void SigDeleteMacroButton(QString MacroName);
    void SigMacroDownLoadData(QString MacroName, int index);
    void SigUpDataMacro(QString MacroName, int index);
    void SigMacroRename(QString Rename, QString Name);
    void SigSetMacroPage();
    void SigStartRecord(int index);
    void SigUpDataDPI(int index);        // blocking
    void SigUpDataReportRate(int index); // blocking
    void SigUpDataParam(int index);
    void SigTimerStop();
    void SigButtonEnable(int index);
    void SigHideModel(int index);
    void SigLabelText(int index, QString Text);
    void SigLabelTextB(QString TextA, QString Text);
    void SigProgress(int index, int value);
    void SigBattery(bool IsCharg, int Number, bool IsText); // blocking
    void SigAutoRepair(int index);
    void SigAutoRepairProgress(int index);
    void SigChangeLanguage(int index);
    void SigAllLanguage(int Index);
    void SigLanguageSameA(int index);
    void SigLanguageSameB(int index);
    void SigCloseOffOnline();
    void SigUpDateButton(bool IsHide);
    void SigSetver(int index);
    void SigSetNewVer();
    void SigCloseUpdate();
    void SigCloseProgress();
    void SigRGBValue(DongleRGB *Rgb);   // blocking
    void SigLongRangeMode(bool Select); // blocking
    void SigMouseIndex(int index);
    void SigIsUsb(bool Usb, bool IsVs);
    void SigForm(); // blocking
    void SigFormB();
    void SigFormReset(); // blocking
    void SigEnterKey();
    void SigCheckUpdate();
    void SigRepairCheckUpdate();
    void SigUpdateStart();
    void SigContinue(int);
    void SigUpdateFrame(bool IsVis);
    void SigtVis(int index);
    void SigLightToFrom(int index);
    void SigButtonCheck();
    void Sig20KOpen(bool Open);
    void SigAddSensor(int Value);
    void SigAddReport(int Value);
    void SigAddLOD(QString Value);
    void SigDebunce(QString Value);
    void SigAddConfig(QString Value);
    void SigAddVer(int Type, QString Ver);
    void SigAddUpdate(int Type, bool Isupdate);

private:
    PostMsg() = default;
};
