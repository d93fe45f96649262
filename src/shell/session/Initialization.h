// Makes the root company and the root user of a new service, each where it is missing. Calls the
// service and tells nothing: what failed shows at the sign-in that follows. Main thread.
#pragma once

#include "BLSync.h"
#include "BundleUtil.h"

class Initialization
{
public:
    void initCompany();
    void initRootUser();
    void initAll();

private:
    BundleUtil m_bundleUtil;
    BLSyncCompany m_blSyncCompany;
    BLSyncUserx m_blSyncUserx;
};
