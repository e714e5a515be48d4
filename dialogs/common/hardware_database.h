#pragma once

#include <list>

#include "database/service/database_collector.h"

class QWidget;

// The hardware records of the database; none without a database.
std::list<ZebHardwareRecord> ReadHardwareList();

// The hardware database dialog over `parent`, in a resource scope of the module.
void LaunchHardwareDatabase(QWidget* parent);
