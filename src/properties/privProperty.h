#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "automation/Object.h"
#include "automation/Variant.h"

namespace velmor {

class privProperties;
class privStrCat;

namespace platform {
struct Services;
}

// One named, typed value of a collection, with time stamps, a changed flag, an encoding for the text form and
// two child collections that are built when they are first read. Only a collection makes properties. A property
// lives while somebody holds it, also after its removal from the collection.
//
// An attached string builder is the value: every getter, the writers, the sizes and sorting read
// it, and every setter detaches it.
class privProperty final : public automation::Object {
public:
    // Only a collection can make the key, so only a collection makes properties.
    class Key {
        friend class KeyedItems;
        Key() = default;
    };
    // The services must outlive the property.
    privProperty(Key, platform::Services& services, std::u16string name, automation::Variant&& value,
                 automation::Date now);
    ~privProperty() override;
    privProperty(const privProperty&) = delete;
    privProperty& operator=(const privProperty&) = delete;

    const std::u16string& Name() const noexcept { return name_; }

    automation::Variant Value() const;
    void Value(automation::Variant pvValue);  // let: modified = now, changed = True
    // The object form of the setter: modified = now, but changed stays as it was (on purpose).
    // For any other value it is the let form.
    void SetValue(automation::Variant poValue);

    std::int32_t ValueType() const;        // the automation type number; 9 for every object
    std::u16string ValueTypeName() const;  // as the automation function TypeName
    automation::Date Created() const noexcept { return created_; }
    automation::Date Modified() const noexcept { return modified_; }
    // True on the first of several properties of one name.
    bool Multiple() const noexcept { return multiple_; }
    bool Changed() const noexcept { return changed_; }
    void Changed(bool pbChanged) noexcept { changed_ = pbChanged; }
    bool Encode() const noexcept { return encoding_ != 0; }
    void Encode(bool pbEncode) noexcept { encoding_ = pbEncode ? 1 : 0; }
    // 0 plain, 1 base64, 2 hexadecimal, 4 compressed, 8 substituted; any other number stores 0.
    std::int32_t Encoding() const noexcept { return encoding_; }
    void Encoding(std::int32_t plEncoding) noexcept;

    // The child collections, built from their kept text on the first call; never null. Every call
    // returns the same collection.
    std::shared_ptr<privProperties> Attributes() { return built(Child::attributes); }
    std::shared_ptr<privProperties> Properties() { return built(Child::properties); }

    // Does nothing: a property cleans up when the last reference goes.
    void Dispose() noexcept {}

    // Typed getters and setters. Getters give 0, "" or False for a value that does not convert, and
    // raise nothing; only ValueStr and Value raise 7 if there is no memory for a copy of the text.
    // Setters store their type, set modified to now and changed to True.
    std::int32_t ValueLng() const;
    void ValueLng(std::int32_t plValue) { Value(plValue); }
    std::u16string ValueStr() const;
    void ValueStr(std::u16string psValue) { Value(std::move(psValue)); }
    void SetValueStrRef(std::u16string_view psValue) { Value(psValue); }
    // Date 0 unless the value is a date, a number or a text that the platform takes for a date.
    automation::Date ValueDate(std::int32_t plLocaleID = 0, std::int32_t plFlags = 0) const;
    void ValueDateSet(automation::Date pdValue) { Value(pdValue); }
    // With an argument: whether the value equals it. Without: the truth test of ValueBoolean.
    bool ValueTrue(const automation::Variant& pvTrueValue = automation::Variant::missing()) const;
    bool ValueBoolean() const;
    void ValueBoolean(bool pbValue) { Value(pbValue); }
    double ValueDbl() const;
    void ValueDbl(double pdValue) { Value(pdValue); }
    float ValueSng() const;
    void ValueSng(float pnValue) { Value(pnValue); }
    std::int16_t ValueInt() const;
    void ValueInt(std::int16_t piValue) { Value(piValue); }

    // Estimate in bytes of the value alone; an integer counts 1, a long 2.
    std::int32_t Size() const;
    // Estimate of the characters in the text form, children included. Raises 6 on overflow.
    std::int32_t SizeStored() { return sizeStored(0); }

    // For the collection, the text form and the programs.

    void SetMultiple(bool pbMultiple) noexcept { multiple_ = pbMultiple; }
    // Replaces the value and leaves the time stamps and the changed flag alone.
    void SetValueQuiet(automation::Variant&& pvValue);

    // Whether the child collection, built or not, has entries.
    bool HasAttributes() const { return has(Child::attributes); }
    bool HasProperties() const { return has(Child::properties); }
    enum class Child { attributes, properties };
    // Keeps text for the child collection without building it; a built one is let go.
    void keepChild(Child which, std::u16string text);

    // The attached builder; an empty one is attached first if needed.
    std::shared_ptr<privStrCat> StrCatValue();

    // The value without a copy, valid until the property changes. It is not current while a builder
    // is attached.
    const automation::Variant& rawValue() const noexcept { return value_; }
    const privStrCat* builder() const noexcept { return extras_ != nullptr ? extras_->builder.get() : nullptr; }

    automation::Variant invoke(std::u16string_view name, automation::InvokeKind kind,
                               std::span<automation::Variant> arguments) override;
    std::u16string typeName() const override { return u"privProperty"; }

private:
    friend class privProperties;
    friend class PropertyWriter;

    // A child collection: its text until it is built, the collection from then on.
    struct Children {
        std::u16string text;
        std::shared_ptr<privProperties> built;
    };
    // What few properties have.
    struct Extras {
        std::array<Children, 2> children;  // by Child
        std::shared_ptr<privStrCat> builder;

        Children& of(Child which) { return children[static_cast<std::size_t>(which)]; }
    };

    void touch();
    Extras& extras();
    std::shared_ptr<privProperties> built(Child which);
    bool has(Child which) const;
    std::int32_t valueSizeStored() const;
    std::int32_t sizeStored(int level);
    std::int32_t withChildren(std::int32_t own, int level, std::int32_t (privProperties::*sum)(int) const);

    platform::Services& services_;
    const std::u16string name_;
    automation::Variant value_;
    std::unique_ptr<Extras> extras_;
    automation::Date created_;
    automation::Date modified_;
    std::uint8_t encoding_ = 0;
    bool multiple_ = false;
    bool changed_ = false;
};

using PropertyRef = std::shared_ptr<privProperty>;

}  // namespace velmor
