#pragma once

#include <tessel/ClassRepository.h>

#include <atomic>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tsl
{

/// The known classes by name. Where several have one name, the one with the smallest id counts.
///
/// Lookups take no lock (R12): any thread may look up a name, beside one thread that adds or removes. Therefore names
/// stay, and so do tables that became too small, until the object is destroyed.
class ClassNames
{
public:
    ClassNames();
    ClassNames(ClassNames const &) = delete;
    ClassNames & operator=(ClassNames const &) = delete;

    /// The description's id is larger than those that were added before. It is not copied.
    void Add(ClassDescription const & oClass);

    /// Does nothing if no class of that name and id has been added.
    void Remove(ClassDescription const & oClass);

    /// The factory function of the class, which may be null. If there is no such class, a function that returns null.
    ClassDescription::FactoryFunction FindFactory(std::string_view sName) const;

private:
    struct Name
    {
        explicit Name(std::string_view sTheName);

        /// What the lookup of the name returns, once its classes have changed.
        void Publish();

        std::string const sName;
        std::vector<ClassDescription const *> vClasses; // in the order of their ids
        std::atomic<ClassDescription::FactoryFunction> fFactory;
    };

    /// Each name is in the first slot from its hash on that was empty. The size is a power of two, and at least half
    /// of the slots are empty.
    using Slot = std::atomic<Name *>;
    using Table = std::vector<Slot>;

    static Slot & FindSlot(Table & oTable, std::string_view sName);
    Name & AddName(std::string_view sName);
    void Grow();

    std::deque<Name> m_oNames;
    std::deque<Table> m_oTables;
    std::atomic<Table *> m_pTable;
};

} // namespace tsl
