// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "catalogue/IniStore.h"

#include "environment/FileLock.h"
#include "environment/SafeFile.h"

#include <QRunnable>

namespace
{

constexpr int FileLockTimeMs = 1000;

class Flush : public QRunnable
{
public:
    explicit Flush(IniStore &store) : store_(store) {}
    void run() override { store_.flush(); }

private:
    IniStore &store_;
};

} // namespace

IniStore::IniStore(const QString &path) : path_(path) { writer_.setMaxThreadCount(1); }

IniStore::~IniStore()
{
    writer_.waitForDone();
    flush();
}

// Reads the file once; what other programs write later stays in the file, but is not seen without
// readAgain().
IniDocument &IniStore::document()
{
    if (!document_)
        document_ = IniDocument::parse(readFile(path_, IniSizeLimit).value_or(QByteArray()));
    return *document_;
}

void IniStore::readAgain()
{
    const std::lock_guard lock(state_);
    document_.reset();
    apply(writing_, &document());
    apply(waiting_, &document());
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
    waiting_.insert(name, value);
    apply({{name, value}}, &document());
    if (!scheduled_) {
        scheduled_ = true;
        writer_.start(new Flush(*this));
    }
}

bool IniStore::flush()
{
    const std::lock_guard file(file_);
    Edits edits;
    {
        const std::lock_guard state(state_);
        scheduled_ = false;
        writing_.swap(waiting_);
        edits = writing_;
    }
    const bool written = edits.isEmpty() || write(edits);
    const std::lock_guard state(state_);
    writing_.clear();
    for (auto edit = edits.cbegin(); !written && edit != edits.cend(); ++edit) {
        if (!waiting_.contains(edit.key())) // a newer edit replaces the failed one
            waiting_.insert(edit.key(), edit.value());
    }
    return written;
}

// Reads the file again under its lock, since a second copy of the program may have changed it. A file that
// exists and cannot be read is not replaced, nor one that holds these values already.
bool IniStore::write(const Edits &edits)
{
    const FileLock lock(path_ + QStringLiteral(".lock"), FileLockTimeMs);
    if (!lock.isHeld())
        return false;
    QByteArray content;
    if (readFile(path_, IniSizeLimit, &content) == ReadResult::Refused)
        return false;
    const IniDocument found = IniDocument::parse(content);
    IniDocument document = found;
    apply(edits, &document);
    return document == found || writeFileSafely(path_, document.serialise());
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
