#pragma once
// How the data-bound controls trap their own errors: a routine with a marker catches what the
// data layer (or its own code) throws, reports it once and returns its fallback. The tree
// classes report through ReportTreeError, the list through a box titled
// "C64-Report-Fehler: <marker>".

#include "catalogue/DbError.h"
#include "controls/SqlTree.h"

#include <exception>
#include <new>
#include <QString>
#include <type_traits>

namespace vd::controls {

// Error numbers of run-time errors that are not the database's.
namespace rterr {
constexpr int InvalidCall = 5;
constexpr int OutOfMemory = 7;
constexpr int ObjectMissing = 91;
} // namespace rterr

// The list's report: a critical box with the description, titled "C64-Report-Fehler: <marker>".
void ReportListError(const QString& marker, const QString& description);

// Throws the run-time error "Invalid procedure call or argument" (5) with a hint.
[[noreturn]] void invalidCall(const QString& what);

template <typename Report, typename Fn, typename R>
R guardedCall(Report&& report, R fallback, Fn&& fn)
{
    try {
        return fn();
    } catch (const db::DbError& e) {
        report(e.number(), e.description());
    } catch (const std::bad_alloc&) {
        report(rterr::OutOfMemory, QStringLiteral("Out of memory"));
    } catch (const std::exception& e) {
        report(rterr::InvalidCall, QString::fromLocal8Bit(e.what()));
    }
    return fallback;
}

// Runs `fn`; an error is reported as the tree does and `fallback` comes back.
template <typename Fn, typename R = std::invoke_result_t<Fn>>
R treeGuard(const char* place, R fallback, Fn&& fn)
{
    return guardedCall(
        [place](int n, const QString& d) { ReportTreeError(QLatin1String(place), n, d); },
        std::move(fallback), std::forward<Fn>(fn));
}

template <typename Fn> void treeGuard(const char* place, Fn&& fn)
{
    guardedCall([place](int n, const QString& d) { ReportTreeError(QLatin1String(place), n, d); },
                0,
                [&] {
                    fn();
                    return 0;
                });
}

// The same for the list: the box shows the description, titled with the marker.
template <typename Fn, typename R = std::invoke_result_t<Fn>>
R listGuard(const char* marker, R fallback, Fn&& fn)
{
    return guardedCall(
        [marker](int, const QString& d) { ReportListError(QLatin1String(marker), d); },
        std::move(fallback), std::forward<Fn>(fn));
}

template <typename Fn> void listGuard(const char* marker, Fn&& fn)
{
    guardedCall([marker](int, const QString& d) { ReportListError(QLatin1String(marker), d); }, 0,
                [&] {
                    fn();
                    return 0;
                });
}

} // namespace vd::controls
