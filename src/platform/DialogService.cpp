#include "platform/DialogService.h"

#include "platform/ScriptedDialogService.h"

namespace vd::platform {

namespace {

DialogService* installed = nullptr;

// Answers every box with its default button and cancels the rest; keeps no record.
class DefaultService : public ScriptedDialogService
{
public:
    DefaultService() { setRecording(false); }
};

DialogService& defaultService()
{
    static DefaultService service;
    return service;
}

} // namespace

DialogService& dialogs()
{
    return installed ? *installed : defaultService();
}

void setDialogService(DialogService* service)
{
    installed = service;
}

} // namespace vd::platform
