// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// A small ini file that the program reads and writes: the user's preferences, the values of the registry.
// A written value can be read at once; a thread of the store's own writes the file, so no caller waits for
// the disk. The file holds its old content or the new one at any moment. After a failure the values stay in
// memory and the next write includes them. Any thread.
#pragma once

#include "catalogue/IniDocument.h"

#include <QMap>
#include <QPair>
#include <QThreadPool>
#include <mutex>
#include <optional>

class IniStore
{
public:
    explicit IniStore(const QString &path);
    ~IniStore(); // writes the pending edits
    IniStore(const IniStore &) = delete;
    IniStore &operator=(const IniStore &) = delete;

    // Empty when the value is missing.
    QString ReadText(const QString &section, const QString &key);
    QStringList ReadList(const QString &section, const QString &key);
    void WriteValue(const QString &section, const QString &key, const QString &value);
    void Remove(const QString &section, const QString &key);

    // Writes the pending edits before it returns. False when the file could not be written.
    bool flush();
    QString path() const { return path_; }

protected:
    // Reads the file, so that the next read has what another program wrote. Waiting edits are kept.
    void readAgain();

private:
    using Name = QPair<QString, QString>;
    using Edits = QMap<Name, std::optional<QString>>; // without a text the value is removed

    static void apply(const Edits &edits, IniDocument *document);
    IniDocument &document(); // the caller holds state_
    void edit(const Name &name, const std::optional<QString> &value);
    bool write(const Edits &edits);

    const QString path_;
    std::mutex state_; // guards the next four; held for microseconds but for readAgain()
    std::optional<IniDocument> document_;
    Edits waiting_;
    Edits writing_; // taken from waiting_, not yet in the file
    bool scheduled_ = false;
    std::mutex file_; // one writer at a time; taken before state_
    QThreadPool writer_;
};
