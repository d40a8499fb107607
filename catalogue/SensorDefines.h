// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Reader of "driver_sensor.h" beside the program: which sensors have which capability, and the codes that
// a sensor expects for its DPI values, as macros SENSOR_<sensor>_DPI_<dpi>. The file is read as text, in
// the few line forms that its makers use; every other line is passed over, and a number that is none is 0.
// A file that is missing or larger than SensorHeaderLimit reads as empty. Main thread.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

constexpr qint64 SensorHeaderLimit = 1048576; // bytes

// Names in the order of the file and, index by index, their values. A name may stand there twice; the first
// one counts.
inline QStringList SensorDefineNames;
inline QVector<int32_t> SensorDefineValues;

// Each text names sensors in free form: whoever asks for a capability looks for the sensor's name in it.
struct SensorCapabilities {
    QString SensorModeSupport;
    QString LodSupport;
    QString RippleSupport;
    QString FixLineSupport;
    QString MotionSyncSupport;
    QString MousepadCalSupport; // no setting depends on it
};

// Appends what the file says to the process-wide lists, whatever they hold already. The capabilities are
// those of this reading.
SensorCapabilities ReadSensorDefines();
// The same for lists of the caller's own.
SensorCapabilities ReadSensorDefines(QStringList *names, QVector<int32_t> *values);

// The same for a file's content.
SensorCapabilities parseSensorDefines(const QByteArray &content, QStringList *names,
                                      QVector<int32_t> *values);
