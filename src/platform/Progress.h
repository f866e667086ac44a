#pragma once
// How long work reports its progress and learns that the user cancelled. The loops call
// yield() at their designed points; a window's implementation lets events through there.

#include <QString>

namespace vd::platform {

class Progress
{
public:
    virtual ~Progress() = default;
    virtual void setStatus(const QString& text) { (void)text; }
    virtual void setRange(qint64 maximum) { (void)maximum; }
    virtual void setValue(qint64 value) { (void)value; }
    virtual bool cancelled() const { return false; }
    virtual void yield() {}
};

// A progress that shows nothing and is never cancelled.
inline Progress& noProgress()
{
    static Progress none;
    return none;
}

} // namespace vd::platform
