// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// ProductFolder: a temporary application folder with a catalogue of the test's own, and a temporary home.
// Made before anything reads the catalogue, since its reader keeps the file open for the process.
#pragma once

#include "environment/DataRoot.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

class ProductFolder
{
public:
    // The catalogue's text holds readable values; those keys whose values are coded in the file are
    // written as code(…).
    explicit ProductFolder(const QByteArray &catalogue)
    {
        qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
        QDir(folder.path()).mkpath(QStringLiteral("usersetting"));
        QFile file(folder.filePath(QStringLiteral("usersetting/Config.ini")));
        if (file.open(QIODevice::WriteOnly))
            file.write(catalogue);
        file.close();
        setApplicationFolder(folder.path());
        makeDataFolders();
    }
    static QByteArray code(const char *text) { return QByteArray(text).toBase64(); }
    QString path(const QString &below) const { return folder.filePath(below); }

private:
    QTemporaryDir folder;
    QTemporaryDir home;
};

// Two ids for cable and 8 kHz receiver, and three models.
inline QByteArray smallCatalogue()
{
    const auto code = ProductFolder::code;
    return "[Option]\nDeviceTotal=3\nVID=" + code("1209") + "\nUSB_PID=" + code("0001") +
           "\nWireless_PID=" + code("0002") + "\nBoot_PID=0006,0007\nWireless8_PID=" + code("0005") +
           "\nCID=" + code("18") + "\nShowBatteryValue=1\n[Drive1]\nMID=6\nSensor=" + code("3395") +
           "\nDPIMaxGrade=6\nKeyNumber=6\nAdveanced=0,2\n[Drive2]\nMID=7\nSensor=" + code("3950") +
           "\nDPIMaxGrade=8\nAdveanced=1,-1\nKeyParam3=0x05,x,183\n[Drive3]\nMID=8\nSensor=" + code("3311") +
           "\nDPIMaxGrade=5\nAdveanced=-1,-1\nKeyParam1=0x05,x,181\n";
}
