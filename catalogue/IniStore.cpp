// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "catalogue/IniStore.h"

#include "environment/FileLock.h"
#include "environment/SafeFile.h"

#include <QRunnable>

namespace
{
constexpr int FileLockTimeMs = 1000;
}

IniStore::IniStore(const QString &path) : path_(path) { writer_.setMaxThreadCount(1); }

IniStore::~IniStore()
{
    writer_.waitForDone();
    flush();
}

// Reads the file once; later changes by other programs are seen when this one writes.
IniDocument &IniStore::document()
{
    if (!document_)
        document_ = IniDocument::parse(readFile(path_, IniSizeLimit).value_or(QByteArray()));
    return *document_;
}

QString IniStore::ReadText(const QString &section, const QString &key)
{
    const std::lock_guard lock(state_);
    return document().text(section, key);
}

QStringList IniStore::ReadList(const QString &section, const QString &key)
{
    const std::lock_guard lock(state_);
    return document().list(section, key);
}

void IniStore::WriteValue(const QString &section, const QString &key, const QString &value)
{
    edit({section, key}, value);
}

void IniStore::Remove(const QString &section, const QString &key) { edit({section, key}, std::nullopt); }

void IniStore::edit(const Name &name, const std::optional<QString> &value)
{
    const std::lock_guard lock(state_);
    const bool present = document().contains(name.first, name.second);
    const bool same =
        value ? present && document().list(name.first, name.second) == QStringList(*value) : !present;
    if (same && !waiting_.contains(name))
        return;
    waiting_.insert(name, value);
    apply({{name, value}}, &document());
    if (!scheduled_) {
        scheduled_ = true;
        writer_.start(QRunnable::create([this] { flush(); }));
    }
}

bool IniStore::flush()
{
    const std::lock_guard file(file_);
    Edits edits;
    {
        const std::lock_guard state(state_);
        scheduled_ = false;
        edits.swap(waiting_);
    }
    if (edits.isEmpty() || write(edits))
        return true;
    const std::lock_guard state(state_);
    for (auto edit = edits.cbegin(); edit != edits.cend(); ++edit) {
        if (!waiting_.contains(edit.key())) // a newer edit replaces the failed one
            waiting_.insert(edit.key(), edit.value());
    }
    return false;
}

// Reads the file again under its lock, since a second copy of the program may have changed other values. A
// file that exists and cannot be read is not replaced.
bool IniStore::write(const Edits &edits)
{
    const FileLock lock(path_ + QStringLiteral(".lock"), FileLockTimeMs);
    if (!lock.isHeld())
        return false;
    QByteArray content;
    if (readFile(path_, IniSizeLimit, &content) == ReadResult::Refused)
        return false;
    IniDocument document = IniDocument::parse(content);
    apply(edits, &document);
    return writeFileSafely(path_, document.serialise());
}

void IniStore::apply(const Edits &edits, IniDocument *document)
{
    for (auto edit = edits.cbegin(); edit != edits.cend(); ++edit) {
        if (edit.value())
            document->set(edit.key().first, edit.key().second, *edit.value());
        else
            document->remove(edit.key().first, edit.key().second);
    }
}
