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

IniStore::IniStore(const QString &path) : m_path(path) { m_writer.setMaxThreadCount(1); }

IniStore::~IniStore()
{
    m_writer.waitForDone();
    flush();
}

// Read once: nobody else writes the file while the program runs.
IniDocument &IniStore::document()
{
    if (!m_document)
        m_document = IniDocument::parse(readFile(m_path, IniSizeLimit).value_or(QByteArray()));
    return *m_document;
}

QString IniStore::ReadText(const QString &section, const QString &key)
{
    const std::lock_guard lock(m_state);
    return document().text(section, key);
}

QStringList IniStore::ReadList(const QString &section, const QString &key)
{
    const std::lock_guard lock(m_state);
    return document().list(section, key);
}

void IniStore::WriteValue(const QString &section, const QString &key, const QString &value)
{
    edit({section, key}, value);
}

void IniStore::Remove(const QString &section, const QString &key) { edit({section, key}, std::nullopt); }

void IniStore::edit(const Name &name, const std::optional<QString> &value)
{
    const std::lock_guard lock(m_state);
    const bool present = document().contains(name.first, name.second);
    const bool same =
        value ? present && document().list(name.first, name.second) == QStringList(*value) : !present;
    if (same && !m_waiting.contains(name))
        return;
    m_waiting.insert(name, value);
    apply({{name, value}}, &document());
    if (!m_scheduled) {
        m_scheduled = true;
        m_writer.start(QRunnable::create([this] { flush(); }));
    }
}

bool IniStore::flush()
{
    const std::lock_guard file(m_file);
    Edits edits;
    {
        const std::lock_guard state(m_state);
        m_scheduled = false;
        edits.swap(m_waiting);
    }
    if (edits.isEmpty() || write(edits))
        return true;
    const std::lock_guard state(m_state);
    for (auto edit = edits.cbegin(); edit != edits.cend(); ++edit) {
        if (!m_waiting.contains(edit.key())) // a newer value has come meanwhile
            m_waiting.insert(edit.key(), edit.value());
    }
    return false;
}

// Reads the file again under its lock: a second copy of the program may have changed other values. A file
// that is there and cannot be read is left as it is.
bool IniStore::write(const Edits &edits)
{
    const FileLock lock(m_path + QStringLiteral(".lock"), FileLockTimeMs);
    if (!lock.isHeld())
        return false;
    QByteArray content;
    if (readFile(m_path, IniSizeLimit, &content) == ReadResult::Refused)
        return false;
    IniDocument document = IniDocument::parse(content);
    apply(edits, &document);
    return writeFileSafely(m_path, document.serialise());
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
