#include "app/ui/ShowOnStart.h"

#include <cstdio>
#include <QAction>
#include <QPointer>
#include <QTimer>
#include <QWidget>

namespace vd::app::ui {

namespace {

// Long enough for the window to be drawn and its lists filled before the next command.
constexpr int kStepMs = 700;
constexpr int kPollMs = 100;

void runNext(QPointer<QWidget> window, QStringList names, bool (*ready)(QWidget*))
{
    if (!window || names.isEmpty())
        return;
    if (!ready(window)) {
        QTimer::singleShot(kPollMs, window, [=] { runNext(window, names, ready); });
        return;
    }
    const QString name = names.takeFirst();
    // The rest is scheduled first: the command may open a modal dialog and not return for long.
    QTimer::singleShot(kStepMs, window, [=] { runNext(window, names, ready); });
    QAction* action = window->findChild<QAction*>(name);
    if (!action || !action->isEnabled()) {
        std::fprintf(stderr, "--show: no enabled command %s\n", qPrintable(name));
        return;
    }
    action->trigger();
}

} // namespace

QStringList takeShowOption(QStringList& arguments)
{
    QStringList names;
    for (qsizetype i = 0; i < arguments.size();) {
        if (arguments[i] == QLatin1String("--show") && i + 1 < arguments.size()) {
            names << arguments[i + 1];
            arguments.remove(i, 2);
        } else {
            ++i;
        }
    }
    return names;
}

void showOnStart(QWidget* window, const QStringList& names, bool (*ready)(QWidget*))
{
    if (names.isEmpty())
        return;
    QPointer<QWidget> target(window);
    QTimer::singleShot(kStepMs, window, [=] { runNext(target, names, ready); });
}

} // namespace vd::app::ui
