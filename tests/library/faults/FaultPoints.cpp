#include "FaultPoints.h"

#include <mutex>
#include <utility>

namespace faults {

namespace {

std::mutex s_mutex;
std::set<Site> s_sites;
bool s_records = false;
int s_rests = 0;
Site s_failing;
bool s_hasFailed = false;
void (*s_onFailure)() = nullptr;

bool IsFailing(const Site& site)
{
    return s_failing.address ? site == s_failing : site.function == s_failing.function;
}

} // namespace

void Record()
{
    const std::lock_guard lock(s_mutex);
    s_records = true;
}

std::set<Site> Recorded()
{
    const std::lock_guard lock(s_mutex);
    s_records = false;
    return std::exchange(s_sites, {});
}

Rest::Rest()
{
    const std::lock_guard lock(s_mutex);
    ++s_rests;
}

Rest::~Rest()
{
    const std::lock_guard lock(s_mutex);
    --s_rests;
}

void FailNext(const Site& site, void (*onFailure)())
{
    const std::lock_guard lock(s_mutex);
    s_failing = site;
    s_onFailure = onFailure;
    s_hasFailed = false;
}

bool HasFailed()
{
    const std::lock_guard lock(s_mutex);
    s_failing = {};
    return s_hasFailed;
}

bool IsDue(const Site& site)
{
    const std::lock_guard lock(s_mutex);
    if (s_rests > 0) return false;
    if (s_records) s_sites.insert(site);
    if (!IsFailing(site)) return false;
    s_failing = {};
    s_hasFailed = true;
    if (s_onFailure) s_onFailure();
    return true;
}

} // namespace faults
