#include "OrvelModes/Linux/DBusMenu.h"

#include <QObject>
#include <algorithm>
#include <utility>
#include <vector>

#include "OrvelModes/Linux/StatusNotifierTypes.h"
#include "OrvelModes/Qt/MenuRowText.h"

namespace OrvelModes {

using StatusNotifier::Events;
using StatusNotifier::Layout;
using StatusNotifier::Rows;

namespace {

constexpr int rootID = 0;

/// A row with its ID on the bus.
struct Numbered {
    int id = rootID;
    StatusMenuEntry entry;
    std::vector<Numbered> children;
};

QVariantMap properties(const StatusMenuEntry& entry) {
    QVariantMap map;
    if (std::holds_alternative<StatusMenuEntry::Separator>(entry.kind)) {
        map.insert(QStringLiteral("type"), QStringLiteral("separator"));
        return map;
    }
    // In a label, the protocol treats an underscore as the prefix of an access key.
    map.insert(QStringLiteral("label"),
               MenuRowText::title(entry).replace(u'_', QStringLiteral("__")));
    map.insert(QStringLiteral("enabled"), entry.enabled);
    if (entry.checked) {
        map.insert(QStringLiteral("toggle-type"), QStringLiteral("checkmark"));
        map.insert(QStringLiteral("toggle-state"), 1);
    }
    if (!entry.children.empty())
        map.insert(QStringLiteral("children-display"), QStringLiteral("submenu"));
    const auto keys = MenuRowText::keys(entry);
    if (!keys.isEmpty())
        map.insert(QStringLiteral("shortcut"), QVariant::fromValue(QList<QStringList>{keys}));
    return map;
}

QVariantMap properties(const Numbered& row) {
    if (row.id != rootID) return properties(row.entry);
    return {{QStringLiteral("children-display"), QStringLiteral("submenu")}};
}

QVariantMap filtered(QVariantMap map, const QStringList& names) {
    if (names.isEmpty()) return map;
    for (auto entry = map.begin(); entry != map.end();)
        entry = names.contains(entry.key()) ? std::next(entry) : map.erase(entry);
    return map;
}

/// Returns the row with `depth` levels of rows below it; with all levels if `depth` is negative.
Layout layout(const Numbered& row, int depth, const QStringList& names) {
    Layout result{row.id, filtered(properties(row), names), {}};
    if (depth == 0) return result;
    for (const auto& child : row.children)
        result.children.append(QDBusVariant(QVariant::fromValue(layout(child, depth - 1, names))));
    return result;
}

const Numbered* find(const Numbered& row, int id) {
    if (row.id == id) return &row;
    for (const auto& child : row.children) {
        if (const auto* const found = find(child, id)) return found;
    }
    return nullptr;
}

void collect(const Numbered& row, const QList<int>& ids, const QStringList& names, Rows& rows) {
    if (ids.isEmpty() || ids.contains(row.id))
        rows.append({row.id, filtered(properties(row), names)});
    for (const auto& child : row.children) collect(child, ids, names, rows);
}

}  // namespace

class DBusMenu::Object final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version)
    Q_PROPERTY(QString TextDirection READ textDirection)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath)

  public:
    explicit Object(StatusMenuController& controller) : controller_(controller) {}

    static uint version() { return 3; }
    static QString textDirection() { return QStringLiteral("ltr"); }
    static QString status() { return QStringLiteral("normal"); }
    static QStringList iconThemePath() { return {}; }

  public Q_SLOTS:
    uint GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                   OrvelModes::StatusNotifier::Layout& layout) {
        // A host may read the layout before it has announced that it will show the menu.
        if (revision_ == 0) update();
        const auto* const row = find(root_, parentId);
        layout = row == nullptr ? Layout{parentId, {}, {}}
                                : OrvelModes::layout(*row, recursionDepth, propertyNames);
        return revision_;
    }
    OrvelModes::StatusNotifier::Rows GetGroupProperties(const QList<int>& ids,
                                                        const QStringList& propertyNames) {
        Rows rows;
        collect(root_, ids, propertyNames, rows);
        return rows;
    }
    QDBusVariant GetProperty(int id, const QString& name) {
        const auto* const row = find(root_, id);
        const auto value = row == nullptr ? QVariant() : properties(*row).value(name);
        return QDBusVariant(value.isValid() ? value : QVariant(QString()));
    }
    void Event(int id, const QString& eventId, const QDBusVariant& /*data*/, uint /*timestamp*/) {
        if (eventId == QLatin1String("opened") && id == rootID) update();
        if (eventId == QLatin1String("clicked")) choose(id);
    }
    QList<int> EventGroup(const OrvelModes::StatusNotifier::Events& events) {
        QList<int> unknown;
        for (const auto& event : events) {
            if (find(root_, event.id) == nullptr) unknown.append(event.id);
            Event(event.id, event.name, event.data, event.time);
        }
        return unknown;
    }
    bool AboutToShow(int id) { return id == rootID && update(); }
    QList<int> AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors) {
        QList<int> changed;
        for (const int id : ids) {
            if (find(root_, id) == nullptr)
                idErrors.append(id);
            else if (AboutToShow(id))
                changed.append(id);
        }
        return changed;
    }

  Q_SIGNALS:
    void LayoutUpdated(uint revision, int parent);
    void ItemsPropertiesUpdated(const OrvelModes::StatusNotifier::Rows& updatedProps,
                                const OrvelModes::StatusNotifier::Rows& removedProps);
    void ItemActivationRequested(int id, uint timestamp);

  private:
    /// Returns whether the menu has changed.
    bool update() {
        controller_.menuNeedsUpdate();
        if (revision_ > 0 && controller_.menu() == shown_) return false;
        shown_ = controller_.menu();
        root_.children = numbered(shown_, rootID);
        Q_EMIT LayoutUpdated(++revision_, rootID);
        return true;
    }

    void choose(int id) {
        const auto* const row = find(root_, id);
        if (row == nullptr || !row->entry.enabled) return;
        const auto* const action = row->entry.action();
        if (action == nullptr) return;
        // Deferred: the action may take a while, and the caller waits for the reply.
        QMetaObject::invokeMethod(
            this, [this, chosen = *action] { controller_.perform(chosen); }, Qt::QueuedConnection);
    }

    std::vector<Numbered> numbered(const std::vector<StatusMenuEntry>& entries, int parent) {
        std::vector<Numbered> rows;
        for (int place = 0; const auto& entry : entries) {
            const int id = number(entry, parent, place++);
            rows.push_back({id, entry, numbered(entry.children, id)});
        }
        return rows;
    }

    /// A host may act on a menu that it has read earlier. So an action keeps its ID forever, and no
    /// ID is reused. Rows that are not actions are identified by their position.
    int number(const StatusMenuEntry& entry, int parent, int place) {
        const auto* const action = entry.action();
        const Identity identity{parent, action == nullptr ? std::nullopt : std::optional(*action),
                                action == nullptr ? place : 0};
        const auto known = std::find(identities_.begin(), identities_.end(), identity);
        const auto id = static_cast<int>(known - identities_.begin()) + 1;
        if (known == identities_.end()) identities_.push_back(identity);
        return id;
    }

    struct Identity {
        int parent = rootID;
        std::optional<StatusMenuAction> action;
        int place = 0;
        bool operator==(const Identity&) const = default;
    };

    StatusMenuController& controller_;
    std::vector<StatusMenuEntry> shown_;
    Numbered root_{.entry = {.kind = StatusMenuEntry::Submenu{}}};
    std::vector<Identity> identities_;
    uint revision_ = 0;
};

DBusMenu::DBusMenu(StatusMenuController& controller, QDBusConnection bus, const QString& path)
    : object_(std::make_unique<Object>(controller)), bus_(std::move(bus)), path_(path) {
    StatusNotifier::registerTypes();
    bus_.registerObject(path_, object_.get(),
                        QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals |
                            QDBusConnection::ExportAllProperties);
}

DBusMenu::~DBusMenu() {
    bus_.unregisterObject(path_);
}

}  // namespace OrvelModes

#include "DBusMenu.moc"
