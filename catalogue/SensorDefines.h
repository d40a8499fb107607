// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Reader of "driver_sensor.h" beside the program: which sensors have which capability, and the codes that
// a sensor expects for its DPI values, as macros SENSOR_<sensor>_DPI_<dpi>. The file is read as text, in
// the line forms that occur in it; every other line is skipped, and a malformed number is 0.
// A file that is missing or larger than SensorHeaderLimit reads as empty. Main thread.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

constexpr qint64 SensorHeaderLimit = 1048576; // bytes

// Names in the order of the file and, index by index, their values. A name may occur twice; the first
// one counts.
inline QStringList SensorDefineNames;
inline QVector<int32_t> SensorDefineValues;

// Each text names sensors in free form; a sensor has the capability when the text contains its name.
struct SensorCapabilities {
    QString SensorModeSupport;
    QString LodSupport;
    QString RippleSupport;
    QString FixLineSupport;
    QString MotionSyncSupport;
    QString MousepadCalSupport; // no setting depends on it
};

// Appends the file's macros to the process-wide lists. The capabilities are replaced.
SensorCapabilities ReadSensorDefines();
// The same into the caller's lists.
SensorCapabilities ReadSensorDefines(QStringList *names, QVector<int32_t> *values);

// The same from the content of a file.
SensorCapabilities parseSensorDefines(const QByteArray &content, QStringList *names,
                                      QVector<int32_t> *values);
