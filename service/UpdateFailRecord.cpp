// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "service/UpdateFailRecord.h"

#include "catalogue/RegistryStore.h"
#include "device/FirmwareSearch.h"

#include <algorithm>
#include <mutex>

namespace
{

const QString Name = QLatin1String(registry::UpdateFailInfo);
const QString WaitingName = QLatin1String(registry::UpdateFailWaiting);
constexpr QLatin1Char Separator(';');

// The main thread removes what makes no sense, the layer's upgrade thread names what it flashes.
template <typename Change> bool changeStored(Change change)
{
    static auto *const mutex = new std::mutex; // the layer's thread may outlive the program's end
    const std::lock_guard lock(*mutex);
    QStringList texts = UpdateFailRecord::storedTexts();
    change(texts);
    return UpdateFailRecord::storeTexts(texts);
}

} // namespace

std::optional<UpdateFailRecord> UpdateFailRecord::parse(const QString &text)
{
    const QStringList fields = text.split(QLatin1Char(','));
    int numbers[4] = {};
    if (fields.size() != 4)
        return std::nullopt;
    for (int i = 0; i < 4; ++i) {
        bool isNumber = false;
        numbers[i] = fields[i].toInt(&isNumber);
        if (!isNumber)
            return std::nullopt;
    }
    return UpdateFailRecord{numbers[0], numbers[1], numbers[2], numbers[3]};
}

QString UpdateFailRecord::text() const
{
    return QStringLiteral("%1,%2,%3,%4").arg(target).arg(connectionKind).arg(cid).arg(mid);
}

bool UpdateFailRecord::makesSense() const
{
    const DeviceCatalogue catalogue;
    return (target == TargetMouse || target == TargetReceiver) &&
           !firmwareKey(TargetReceiver, connectionKind).isEmpty() &&
           catalogue.find(cid, mid) != catalogue.total();
}

bool UpdateFailRecord::isSameDevice(const UpdateFailRecord &other) const
{
    return target == other.target && cid == other.cid && mid == other.mid &&
           (target != TargetReceiver || connectionKind == other.connectionKind);
}

bool UpdateFailRecord::isOfSameDevice(const QString &text) const
{
    const auto other = parse(text);
    return other && isSameDevice(*other);
}

bool UpdateFailRecord::putFirst() const
{
    return changeStored([this](QStringList &texts) {
        const auto goes = [this](const QString &text) {
            const auto other = parse(text);
            return !other || !other->makesSense() || isSameDevice(*other);
        };
        texts.erase(std::remove_if(texts.begin(), texts.end(), goes), texts.end());
        texts.prepend(this->text());
    });
}

bool UpdateFailRecord::putBack(const QStringList &before) const
{
    return changeStored([this, &before](QStringList &texts) {
        const auto isOwn = [this](const QString &text) { return isOfSameDevice(text); };
        texts.erase(std::remove_if(texts.begin(), texts.end(), isOwn), texts.end());
        const auto own = std::find_if(before.cbegin(), before.cend(), isOwn);
        if (own != before.cend())
            texts.insert(qMin(int(own - before.cbegin()), texts.size()), *own);
    });
}

bool UpdateFailRecord::takeAway() const
{
    return changeStored([this](QStringList &texts) {
        const auto goes = [this](const QString &text) { return isOfSameDevice(text); };
        texts.erase(std::remove_if(texts.begin(), texts.end(), goes), texts.end());
    });
}

bool UpdateFailRecord::takeAway(const QString &text)
{
    return changeStored([&text](QStringList &texts) { texts.removeAll(text); });
}

QString UpdateFailRecord::storedText() { return storedTexts().value(0); }

QStringList UpdateFailRecord::storedTexts()
{
    RegistryStore &registry = RegistryStore::instance();
    QStringList texts(registry.value(registry::BaseGroup, Name));
    texts += registry.value(registry::BaseGroup, WaitingName).split(Separator);
    texts.removeAll(QString());
    return texts;
}

bool UpdateFailRecord::store(const QString &text) { return storeTexts({text}); }

bool UpdateFailRecord::storeTexts(const QStringList &texts)
{
    RegistryStore &registry = RegistryStore::instance();
    const auto set = [&registry](const QString &name, const QString &value) {
        if (value.isEmpty())
            registry.removeValue(registry::BaseGroup, name);
        else
            registry.setValue(registry::BaseGroup, name, value);
    };
    set(Name, texts.value(0));
    set(WaitingName, texts.mid(1).join(Separator));
    return registry.flush();
}

void UpdateFailRecord::remove() { storeTexts({}); }
