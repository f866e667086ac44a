#include "launch/ProcessStarter.h"

#include <QProcess>

namespace vd::launch {

namespace {

class DetachedStarter : public ProcessStarter
{
public:
    bool start(const LaunchPlan& plan) override
    {
        if (plan.document)
            return QProcess::startDetached(QStringLiteral("xdg-open"), {plan.program});
        return QProcess::startDetached(plan.program, plan.arguments, plan.workingFolder);
    }
};

ProcessStarter* gStarter = nullptr;

} // namespace

ProcessStarter& processStarter()
{
    static DetachedStarter detached;
    return gStarter ? *gStarter : detached;
}

void setProcessStarter(ProcessStarter* starter)
{
    gStarter = starter;
}

} // namespace vd::launch
