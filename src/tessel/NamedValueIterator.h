#pragma once

#include <tessel/Export.h>
#include <tessel/MessageConstIterator.h>
#include <tessel/TypeName.h>
#include <tessel/Value.h>

#include <functional>
#include <span>
#include <type_traits>

namespace tsl
{

/// A row in the table of a NamedValueIterator or a FieldIterator: a name, and a function that returns the
/// value of that name in an object of class T.
template<class T>
struct NamedGetter
{
    char const * sName;                          ///< is not copied
    Value const & (*fGetter)(T const & oObject); ///< such as GetMember
};

/// A getter for a data member that is a value, or for a member function that returns a reference to one:
/// GetMember<&T::m_sText> or GetMember<&T::GetText>.
template<auto MEMBER, class T>
Value const & GetMember(T const & oObject)
{
    static_assert(std::is_reference_v<std::invoke_result_t<decltype(MEMBER), T const &>>,
        "The member function has to return a reference, since the value has to outlive the call.");
    return std::invoke(MEMBER, oObject);
}

namespace TesselDetails
{

/// An assertion failure: the iterator is at the end.
[[noreturn]] TSL_EXPORT void FailNoElement(char const * sIteratorClass, char const * sOperation);

} // namespace TesselDetails

/// Base of an iterator Self over a fixed set of named values that it owns itself. Self has a table of them.
/// GetValue and GetName at the end are assertion failures. One thread at a time uses an iterator.
///
///     class Iterator : public tsl::NamedValueIterator<Iterator>
///     {
///     public:
///         Iterator() : NamedValueIterator(GetRows().size()) {}
///         static std::span<tsl::NamedGetter<Iterator> const> GetRows();
///
///     private:
///         tsl::ValueInt32 m_iNumber;
///     };
///
/// @tparam T the argument of the getters; Self is a T or converts to one
template<class Self, class T = Self>
class NamedValueIterator : public MessageConstIterator
{
public:
    /// The element, by Self's table.
    Value const & GetValue() const override
    {
        Self const & oSelf = static_cast<Self const &>(*this);
        if (this->IsEnd())
            TesselDetails::FailNoElement(GetTypeName<Self>(), "GetValue");
        return oSelf.GetRows()[static_cast<std::size_t>(this->GetPosition())].fGetter(oSelf);
    }

    /// Its name.
    char const * GetName() const override
    {
        Self const & oSelf = static_cast<Self const &>(*this);
        if (this->IsEnd())
            TesselDetails::FailNoElement(GetTypeName<Self>(), "GetName");
        return oSelf.GetRows()[static_cast<std::size_t>(this->GetPosition())].sName;
    }

protected:
    /// For a table of iSize rows. Is at the end.
    explicit NamedValueIterator(std::size_t iSize) : MessageConstIterator(static_cast<int>(iSize)) {}
};

/// An iterator over named values of an object of class T, by a table. The object and the table must outlive
/// it. One thread at a time uses an iterator. A message returns it from GetConstIterator, with *this as the object.
///
///     static constexpr tsl::NamedGetter<Alarm> aRows[] = {{"Text", tsl::GetMember<&Alarm::m_sText>}};
///     tsl::FieldIterator<Alarm> oElement(oAlarm, aRows);
template<class T>
class FieldIterator : public NamedValueIterator<FieldIterator<T>, T>
{
public:
    /// Is at the end.
    FieldIterator(T const & oObject, std::span<NamedGetter<T> const> oRows)
        : NamedValueIterator<FieldIterator<T>, T>(oRows.size()), m_oObject(oObject), m_oRows(oRows)
    {
    }

    /// For NamedValueIterator.
    operator T const &() const { return m_oObject; }
    std::span<NamedGetter<T> const> GetRows() const { return m_oRows; }

private:
    T const & m_oObject;
    std::span<NamedGetter<T> const> m_oRows;
};

} // namespace tsl
