#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/ValueConverterLayout.h>

#include <memory>

namespace tsl
{

/// The layout of a value that contains other values: a separator, an opening and a closing text for a
/// list, and a layout for each kind of inner value that is not to have its default layout.
///
///     tsl::NamedValueConverterLayout oLayout("${name}=${value}");
///     oLayout.AddLayout(new tsl::ValueFloatConverterLayout("${%.2f}"));
///
/// The layouts are looked up by their own class: a ValueIntegerConverterLayout serves every inner value
/// whose default layout is one.
///
/// Threads: as ValueConverterLayout. Ownership: the collection owns its layouts, at most one per class.
class TSL_EXPORT ValueConverterLayoutCollection
    : public Described<ValueConverterLayoutCollection, ValueConverterLayout, ClassDescription::eAbstract>
{
public:
    /// A copy with layouts of its own.
    ValueConverterLayoutCollection(ValueConverterLayoutCollection const & oSource);

    ~ValueConverterLayoutCollection() override;

    /// The added layout whose class is that of the value's default layout; else that default layout.
    ValueConverterLayout const & GetSuitableLayout(Value const & oValue) const override;

    /// The text between two elements, "," at first.
    ValueString const & GetSeparator() const;
    void SetSeparator(ValueString const & sSeparator);

    /// The texts before the first and after the last element, "(" and ")" at first.
    ValueString const & GetCollPrefix() const;
    ValueString const & GetCollPostfix() const;
    void SetCollPrePostfix(ValueString const & sPrefix, ValueString const & sPostfix);

    /// Takes ownership of the layout and deletes an earlier one of its class. Null is an assertion
    /// failure; a layout that is in the collection already stays.
    void AddLayout(ValueConverterLayout * pLayout);

protected:
    ValueConverterLayoutCollection();

    /// Texts that VerifyFormat refuses are ignored, without a report.
    explicit ValueConverterLayoutCollection(ValueString const & sFormat);
    ValueConverterLayoutCollection(ValueString const & sFormat, ValueString const & sNullFormat);

    ValueConverterLayoutCollection & operator=(ValueConverterLayoutCollection const & oSource);

    /// Copies the texts and adds copies of the source's layouts; own layouts of other classes stay.
    void DoCopy(Root const & oSource) override;

private:
    struct Private;
    std::unique_ptr<Private> m;
};

template<>
TSL_EXPORT ClassDescription const & Described<ValueConverterLayoutCollection, ValueConverterLayout,
    ClassDescription::eAbstract>::GetStaticClassDesc();

} // namespace tsl
