//
// keymapmanager.h
//
// The whole public interface of libzuno-keymapmanager: include this header and
// link zuno::keymapmanager.
//

#ifndef ZUNO_KEYMAPMANAGER_KEYMAPMANAGER_H
#define ZUNO_KEYMAPMANAGER_KEYMAPMANAGER_H

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/Version.h"

// Model: keys, items, the factory, JSON member names and name lists.
#include "zuno-keymapmanager/model/ConfigFactory.h"
#include "zuno-keymapmanager/model/ConfigIcon.h"
#include "zuno-keymapmanager/model/ConfigItem.h"
#include "zuno-keymapmanager/model/ConfigKey.h"
#include "zuno-keymapmanager/model/Fields.h"
#include "zuno-keymapmanager/model/Geometry.h"
#include "zuno-keymapmanager/model/NameLists.h"
#include "zuno-keymapmanager/model/NumberText.h"

// Item types: every header in zuno-keymapmanager/items, listed by the build.
#include "zuno-keymapmanager/items/ItemHeaders.h"

// Documents.
#include "zuno-keymapmanager/document/ConfigInfo.h"
#include "zuno-keymapmanager/document/ConfigParam.h"
#include "zuno-keymapmanager/document/EmbededConfig.h"
#include "zuno-keymapmanager/document/KeymapConfig.h"
#include "zuno-keymapmanager/document/LoadDiagnostic.h"

// Macro language.
#include "zuno-keymapmanager/macro/MacroTouches.h"
#include "zuno-keymapmanager/macro/MarcoCommandConVerters.h"
#include "zuno-keymapmanager/macro/MarcoConVerter.h"
#include "zuno-keymapmanager/macro/MarcoConVerterFactory.h"
#include "zuno-keymapmanager/macro/MarcoConVerterManager.h"

// The manager and the free functions.
#include "zuno-keymapmanager/api/Functions.h"
#include "zuno-keymapmanager/api/KeyObjects.h"
#include "zuno-keymapmanager/api/KeyTriggers.h"
#include "zuno-keymapmanager/api/KeymapCheck.h"
#include "zuno-keymapmanager/api/KeymapManager.h"
#include "zuno-keymapmanager/api/TextFile.h"

#endif  // ZUNO_KEYMAPMANAGER_KEYMAPMANAGER_H
