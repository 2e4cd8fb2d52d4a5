//
// ItemTable.cpp
//
// The declarations of the item types, from the type list (model/ItemTypes.h).
//

#include <typeinfo>

#include "model/ItemTable.h"
#include "zuno-keymapmanager/keymapmanager.h"

namespace zunokeymapmanager {

namespace {

template <typename Item>
ItemDeclaration declare(ItemType type) {
    return {type, [] { return static_cast<ConfigItem*>(new Item()); }, &Item::Members,
            &typeid(Item)};
}

}  // namespace

const std::vector<ItemDeclaration>& ItemDeclarations() {
#define ZUNO_KM_DECLARE(name, itemClass, ...) declare<itemClass>(ItemType::name),
    static const std::vector<ItemDeclaration> types{ZUNO_KM_ITEM_TYPES(ZUNO_KM_DECLARE)};
#undef ZUNO_KM_DECLARE
    return types;
}

const ItemDeclaration* DeclarationOf(const ConfigItem& item) {
    const std::type_info& type = typeid(item);
    const std::vector<ItemDeclaration>& types = ItemDeclarations();
    // The library's own classes have one type_info each; comparing names is
    // left for classes that reach it some other way.
    for (const ItemDeclaration& declaration : types) {
        if (declaration.typeInfo == &type) {
            return &declaration;
        }
    }
    for (const ItemDeclaration& declaration : types) {
        if (*declaration.typeInfo == type) {
            return &declaration;
        }
    }
    return nullptr;
}

ConfigItem* MakeItemOfType(ItemType type) {
    for (const ItemDeclaration& declaration : ItemDeclarations()) {
        if (declaration.type == type) {
            return declaration.make();
        }
    }
    return nullptr;
}

}  // namespace zunokeymapmanager
