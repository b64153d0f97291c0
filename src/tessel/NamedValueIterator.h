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

/// A row of the table of a NamedValueIterator or a FieldIterator: a name, and the function that returns the value of
/// this name from an object of class T.
template<class T>
struct NamedGetter
{
    char const * sName;
    Value const & (*fGetter)(T const & oObject);
};

/// A getter for a data member of class T that is a value, or for a member function that returns a reference to one:
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

/// Fails the assertion that an iterator is on an element.
[[noreturn]] TSL_EXPORT void FailNoElement(char const * sIteratorClass, char const * sOperation);

} // namespace TesselDetails

/// Base of an iterator over a fixed set of named values that it holds itself: Self, the class that derives from it,
/// has a table of them. Access outside of the elements is an assertion failure.
///
///     class Iterator : public tsl::NamedValueIterator<Iterator>
///     {
///     public:
///         static std::span<tsl::NamedGetter<Iterator> const> GetRows();
///
///     private:
///         tsl::ValueInt32 m_iNumber;
///     };
///
/// @tparam T what the getters take; Self is a T or converts to one
template<class Self, class T = Self>
class NamedValueIterator : public MessageConstIterator
{
public:
    Value const & GetValue() const override
    {
        Self const & oSelf = static_cast<Self const &>(*this);
        if (this->IsEnd())
            TesselDetails::FailNoElement(GetTypeName<Self>(), "GetValue");
        return oSelf.GetRows()[static_cast<std::size_t>(this->GetPosition())].fGetter(oSelf);
    }

    char const * GetName() const override
    {
        Self const & oSelf = static_cast<Self const &>(*this);
        if (this->IsEnd())
            TesselDetails::FailNoElement(GetTypeName<Self>(), "GetName");
        return oSelf.GetRows()[static_cast<std::size_t>(this->GetPosition())].sName;
    }

protected:
    explicit NamedValueIterator(std::size_t iSize) : MessageConstIterator(static_cast<int>(iSize)) {}
};

/// The iterator over named values of an object of class T, by a table. The object and the table must outlive it.
///
///     std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> GetConstIterator() const override
///     {
///         static constexpr tsl::NamedGetter<Greeting> aRows[] = {{"Text", tsl::GetMember<&Greeting::m_sText>}};
///         return std::make_unique<tsl::FieldIterator<Greeting>>(*this, aRows);
///     }
template<class T>
class FieldIterator : public NamedValueIterator<FieldIterator<T>, T>
{
public:
    FieldIterator(T const & oObject, std::span<NamedGetter<T> const> oRows)
        : NamedValueIterator<FieldIterator<T>, T>(oRows.size()), m_oObject(oObject), m_oRows(oRows)
    {
    }

    operator T const &() const { return m_oObject; }
    std::span<NamedGetter<T> const> GetRows() const { return m_oRows; }

private:
    T const & m_oObject;
    std::span<NamedGetter<T> const> m_oRows;
};

} // namespace tsl
