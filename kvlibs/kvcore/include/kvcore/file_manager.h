// Knows the root of the file system and the well-known folders.
#ifndef KVCORE_FILE_MANAGER_H
#define KVCORE_FILE_MANAGER_H

#include <map>
#include <memory>

#include "kvcore/file_item.h"
#include "kvcore/initialisable.h"
#include "kvcore/manual_singleton.h"
#include "kvcore/symbol.h"

namespace KVCORE {

// The folder that holds the application.
inline const SYMBOL SPECIAL_ITEM_APPLICATION_ROOT("application_root"_str);
inline const SYMBOL SPECIAL_ITEM_WORKING_ROOT("working_root"_str);
// Folders of the user.
inline const SYMBOL SPECIAL_ITEM_CACHE_ROOT("cache_root"_str);
inline const SYMBOL SPECIAL_ITEM_DOCUMENTS_ROOT("documents_root"_str);
inline const SYMBOL SPECIAL_ITEM_LOGS_ROOT("logs_root"_str);
inline const SYMBOL SPECIAL_ITEM_PICTURES_ROOT("pictures_root"_str);
inline const SYMBOL SPECIAL_ITEM_PREFERENCES_ROOT("preferences_root"_str);
inline const SYMBOL SPECIAL_ITEM_SHARED_DOCUMENTS_ROOT("shared_documents_root"_str);
inline const SYMBOL SPECIAL_ITEM_TEMPORARY_FILES_ROOT("temporary_root"_str);

// The part that doesn't depend on the platform. Initialised once; read-only afterwards as far as
// its users keep it so. No lock.
class FILE_MANAGER_BASE : public INITIALISABLE_OBJECT {
public:
    // The root of the file system; null before initialisation.
    const FILE_ITEM::HANDLE& get_root_item() const { return root_item_; }
    // The item of a symbol. An unknown one yields null and is entered without an item.
    FILE_ITEM::HANDLE get_special_item(const SYMBOL& symbol);
    // Replaces what the symbol had.
    void register_special_item(const SYMBOL& symbol, const FILE_ITEM::HANDLE& item);

protected:
    // Makes the table of special items.
    RESULT do_initialisation() override;
    RESULT do_shutdown() override;
    void set_root_item(const FILE_ITEM::HANDLE& item) { root_item_ = item; }

private:
    using SPECIAL_ITEMS = std::map<SYMBOL, FILE_ITEM::HANDLE>;

    FILE_ITEM::HANDLE root_item_;
    std::unique_ptr<SPECIAL_ITEMS> special_items_;
};

// Fills it from the platform.
class FILE_MANAGER_LINUX : public FILE_MANAGER_BASE {
public:
    bool exists(const FILE_PATH& path) const;
    // The item at a path; null if nothing is there.
    FILE_ITEM::HANDLE get_item_at(const FILE_PATH& path) const;

protected:
    // Finds the root, the application's folder and the user's folders, which are made if they are
    // missing. Of the user's folders, one that can't be had stays unregistered; without one of the
    // others the result is 1.
    RESULT do_initialisation() override;

private:
    RESULT register_special_items();
};

// Started by initialise_kvcore with the rest of the library.
class FILE_MANAGER : public FILE_MANAGER_LINUX, public MANUAL_SINGLETON<FILE_MANAGER> {
public:
    FILE_MANAGER() = default;
    ~FILE_MANAGER() override = default;
};

}  // namespace KVCORE

#endif  // KVCORE_FILE_MANAGER_H
