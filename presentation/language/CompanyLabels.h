// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Reader of the label file, "/Language/Net.xml" beside the program. Its lists for the pages are not used;
// the company's labels under "English" are.
#pragma once

#include <QByteArray>
#include <QStringList>

constexpr qint64 LabelSizeLimit = 1048576; // bytes

// The texts of CompanyName, CompanyNameCn, CompanyWebcn and CompanyWeben under "English", in the file's
// order. Empty with the reader's words in *error when the XML is broken, too deep, or its root is no
// "Profile" ("Not a labels file").
QStringList readCompanyLabels(const QByteArray &xml, QString *error = nullptr);
