// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
#include "tests/e2e/AccessibleBus.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusReply>

namespace
{

constexpr char Accessible[] = "org.a11y.atspi.Accessible";
constexpr char Root[] = "/org/a11y/atspi/accessible/root";
constexpr char Registry[] = "org.a11y.atspi.Registry";
constexpr quint32 LabelledBy = 2;
// Bits of the first word of an object's states.
constexpr quint32 Focusable = 1U << 11;
constexpr quint32 Focused = 1U << 12;
constexpr quint32 Showing = 1U << 25;

struct Reference {
    QString service;
    QString path;
};

QVector<Reference> references(const QDBusArgument &list)
{
    QVector<Reference> all;
    for (list.beginArray(); !list.atEnd();) {
        Reference one;
        QDBusObjectPath path;
        list.beginStructure();
        list >> one.service >> path;
        list.endStructure();
        one.path = path.path();
        all << one;
    }
    list.endArray();
    return all;
}

// An object that is gone meanwhile has none.
bool hasAnswer(const QDBusMessage &reply)
{
    return reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty();
}

QVector<Reference> references(const QDBusMessage &reply)
{
    return hasAnswer(reply) ? references(reply.arguments().first().value<QDBusArgument>())
                            : QVector<Reference>();
}

QString addressOfBus()
{
    const QDBusReply<QString> address = QDBusConnection::sessionBus().call(
        QDBusMessage::createMethodCall(QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
                                       QStringLiteral("org.a11y.Bus"), QStringLiteral("GetAddress")));
    return address;
}

} // namespace

AccessibleBus::AccessibleBus()
    : bus_(QDBusConnection::connectToBus(addressOfBus(), QStringLiteral("screen reader")))
{
    for (const char *name : {"StateChanged", "PropertyChange"})
        bus_.connect(QString(), QString(), QStringLiteral("org.a11y.atspi.Event.Object"),
                     QString::fromLatin1(name), this, SLOT(take(QDBusMessage)));
}

void AccessibleBus::findProgram()
{
    start([this] {
        call(QString::fromLatin1(Registry), QStringLiteral("/org/a11y/atspi/registry"), Registry,
             "RegisterEvent", {QStringLiteral("object:")});
        for (int tries = 0; tries < 400 && program_.isEmpty() && !stopped_; ++tries) {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            for (const Reference &each : references(call(
                     QString::fromLatin1(Registry), QString::fromLatin1(Root), Accessible, "GetChildren")))
                program_ = each.service;
        }
    });
}

AccessibleBus::~AccessibleBus()
{
    stop();
    QDBusConnection::disconnectFromBus(QStringLiteral("screen reader"));
}

// The program answers the call that is under way, then there are no more.
void AccessibleBus::stop()
{
    stopped_ = true;
    while (!done_)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    if (asking_.joinable())
        asking_.join();
    stopped_ = false;
}

void AccessibleBus::start(const std::function<void()> &question)
{
    stop();
    done_ = false;
    asking_ = std::thread([this, question] {
        question();
        done_ = true;
    });
}

QDBusMessage AccessibleBus::call(const QString &service, const QString &path, const char *interface,
                                 const char *method, const QVariantList &arguments) const
{
    if (stopped_)
        return {};
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, QString::fromLatin1(interface),
                                                          QString::fromLatin1(method));
    message.setArguments(arguments);
    return bus_.call(message, QDBus::Block, 20000);
}

QVariant AccessibleBus::property(const QString &path, const char *interface, const char *name) const
{
    const QDBusReply<QVariant> reply = call(program_, path, "org.freedesktop.DBus.Properties", "Get",
                                            {QString::fromLatin1(interface), QString::fromLatin1(name)});
    return reply;
}

QString AccessibleBus::roleOf(const QString &path) const
{
    return QDBusReply<QString>(call(program_, path, Accessible, "GetRoleName"));
}

QString AccessibleBus::nameOf(const QString &path) const
{
    const QDBusMessage reply = call(program_, path, Accessible, "GetRelationSet");
    if (hasAnswer(reply)) {
        const auto relations = reply.arguments().first().value<QDBusArgument>();
        for (relations.beginArray(); !relations.atEnd();) {
            quint32 kind = 0;
            relations.beginStructure();
            relations >> kind;
            const QVector<Reference> targets = references(relations);
            relations.endStructure();
            if (kind == LabelledBy && !targets.isEmpty())
                return property(targets.first().path, Accessible, "Name").toString();
        }
    }
    return property(path, Accessible, "Name").toString();
}

HeardObject AccessibleBus::describe(const QString &path, quint32 states) const
{
    HeardObject object;
    object.path = path;
    object.name = nameOf(path);
    object.role = roleOf(path);
    object.focusable = states & Focusable;
    object.focused = states & Focused;
    if (!object.focusable)
        return object;
    const QStringList interfaces = QDBusReply<QStringList>(call(program_, path, Accessible, "GetInterfaces"));
    if (object.role == QLatin1String("combo box"))
        object.value = property(path, Accessible, "Name").toString();
    else if (interfaces.contains(QLatin1String("org.a11y.atspi.Text")))
        object.value =
            QDBusReply<QString>(call(program_, path, "org.a11y.atspi.Text", "GetText", {0, -1})).value();
    else if (interfaces.contains(QLatin1String("org.a11y.atspi.Value")))
        object.value = property(path, "org.a11y.atspi.Value", "CurrentValue").toString();
    else if (const QString own = property(path, Accessible, "Name").toString(); own != object.name)
        object.value = own;
    return object;
}

void AccessibleBus::visit(const QString &path, const QString &window)
{
    const QDBusReply<QList<quint32>> states = call(program_, path, Accessible, "GetState");
    const quint32 first = states.value().value(0);
    if (path != QLatin1String(Root) && !(first & Showing))
        return;
    QString inside = window;
    if (path != QLatin1String(Root)) {
        HeardObject object = describe(path, first);
        if (inside.isEmpty())
            inside = object.name;
        object.window = inside;
        heard_ << object;
    }
    for (const Reference &child : references(call(program_, path, Accessible, "GetChildren")))
        visit(child.path, inside);
}

void AccessibleBus::walk()
{
    start([this] {
        heard_.clear();
        visit(QString::fromLatin1(Root), QString());
    });
}

QString AccessibleBus::pathOf(const QString &name, const char *role) const
{
    const auto found = std::find_if(heard_.rbegin(), heard_.rend(), [&](const HeardObject &each) {
        return each.name == name && (role ? each.role == QLatin1String(role) : !each.value.isEmpty());
    });
    return found == heard_.rend() ? QString() : found->path;
}

void AccessibleBus::setValue(const QString &name, double value)
{
    start([this, path = pathOf(name), value] {
        call(program_, path, "org.freedesktop.DBus.Properties", "Set",
             {QStringLiteral("org.a11y.atspi.Value"), QStringLiteral("CurrentValue"),
              QVariant::fromValue(QDBusVariant(value))});
    });
}

void AccessibleBus::setText(const QString &name, const QString &text)
{
    start([this, path = pathOf(name, "text"), text] {
        call(program_, path, "org.a11y.atspi.EditableText", "SetTextContents", {text});
    });
}

void AccessibleBus::chooseItem(const QString &name)
{
    start([this, path = pathOf(name, "list item")] {
        call(program_, path, "org.a11y.atspi.Action", "DoAction", {0});
    });
}

void AccessibleBus::take(const QDBusMessage &event)
{
    const QVariantList arguments = event.arguments();
    const QVariant detail = arguments.value(3).value<QDBusVariant>().variant();
    events_ << Event{QStringLiteral("%1 %2").arg(arguments.value(0).toString(),
                                                 event.member() == QLatin1String("StateChanged")
                                                     ? arguments.value(1).toString()
                                                     : detail.toString()),
                     event.path()};
}

void AccessibleBus::askEvents(const QString &wanted)
{
    const QVector<Event> events = events_;
    events_.clear();
    start([this, events, wanted] {
        told_.clear();
        for (const Event &each : events)
            if (wanted.startsWith(each.what + QLatin1Char(' ')))
                told_ << QStringLiteral("%1 %2: %3").arg(each.what, roleOf(each.path), nameOf(each.path));
    });
}
