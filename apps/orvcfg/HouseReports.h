#pragma once

#include <set>

#include "Document.h"
#include "housekeeping/BaseORVMessage.h"

namespace orv::cfg {

/// Collects what a housekeeper reports in a round: what it did as rows, failures as problems of the session.
class HouseReports {
public:
    explicit HouseReports(Session& forSession);
    ~HouseReports();
    HouseReports(const HouseReports&) = delete;
    HouseReports& operator=(const HouseReports&) = delete;

    BaseORVMessage& Log() { return log; }
    const Table& Done() const { return done; }
    const std::set<std::wstring>& Paths() const { return paths; }  ///< of what was done
    bool AllGood() const { return good; }

private:
    void Take();
    Session& session;
    BaseORVMessage log;
    Table done{{{"Done", "action"}, {"File", "file"}}};
    std::set<std::wstring> paths;
    bool good = true;
};

/// Seconds since 1970 UTC.
std::int64_t CurrentTime();

}  // namespace orv::cfg
