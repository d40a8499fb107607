// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Reader of the label file, "/Language/Net.xml" beside the program. Only the company's labels under "English"
// are used.
#pragma once

#include <QByteArray>
#include <QStringList>

constexpr qint64 LabelSizeLimit = 1048576; // bytes

// The texts of CompanyName, CompanyNameCn, CompanyWebcn and CompanyWeben under "English", in the file's
// order. Empty, with the XML reader's message in *error, when the XML is broken, too deep, or its root is no
// "Profile" ("Not a labels file").
QStringList readCompanyLabels(const QByteArray &xml, QString *error = nullptr);
