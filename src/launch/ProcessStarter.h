#pragma once
// How a start leaves the program: a program with its arguments, started detached in a folder
// and never through a shell, or a document handed to the desktop's default application.

#include <QString>
#include <QStringList>

namespace vd::launch {

// One start as it is handed over.
struct LaunchPlan
{
    QString program;       // emulator or editor; for a document the document itself
    QStringList arguments; // split from the raw parameter string
    QString workingFolder; // "" for the starter's own
    bool document = false; // open with the desktop's default application
};

class ProcessStarter
{
public:
    virtual ~ProcessStarter() = default;
    // Starts the plan without waiting; false when it could not be started.
    virtual bool start(const LaunchPlan& plan) = 0;
};

// The starter in force: QProcess::startDetached for programs, xdg-open for documents, until
// a front end installs another one (the windows use the desktop services).
ProcessStarter& processStarter();
// Installs a starter (not owned); nullptr returns to the default.
void setProcessStarter(ProcessStarter* starter);

} // namespace vd::launch
