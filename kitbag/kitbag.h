// Everything that Kitbag offers its callers, but for the COM interfaces (<kitbag/pages.h>).
#pragma once

#include <kitbag/files/checksum.h>
#include <kitbag/files/clipboard.h>
#include <kitbag/files/eject.h>
#include <kitbag/files/folder_dialog.h>
#include <kitbag/files/names.h>
#include <kitbag/files/paths.h>
#include <kitbag/files/shell_link.h>
#include <kitbag/files/unc_translation.h>
#include <kitbag/frame/os_dependent_function.h>
#include <kitbag/frame/win_string.h>
#include <kitbag/registry/directories.h>
#include <kitbag/registry/dump.h>
#include <kitbag/registry/tree.h>
#include <kitbag/registry/values.h>
#include <kitbag/system/module_tracking.h>
#include <kitbag/system/module_version.h>
#include <kitbag/system/system_information.h>
#include <kitbag/values/scalar_values.h>
#include <kitbag/values/value.h>
#include <kitbag/values/value_casts.h>
#include <kitbag/values/value_collection.h>
#include <kitbag/values/visitor.h>
