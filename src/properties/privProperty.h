#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "automation/Object.h"
#include "automation/Variant.h"

namespace velmor {

class privProperties;
class privStrCat;

namespace platform {
struct Services;
}

// One named, typed value of a collection, with time stamps, a changed flag, an encoding for the
// text form and two child collections that are built when they are first read. Made by its
// collection only; lives as long as somebody holds it, also after it left the collection.
//
// An attached string builder is the value: every getter, the writers, the sizes and sorting read
// it, and every setter detaches it.
class privProperty final : public automation::Object {
public:
    // Only a collection can make the key, so only a collection makes properties.
    class Key {
        friend class privProperties;
        Key() = default;
    };
    // The value is the long 0. The services must outlive the property.
    privProperty(Key, platform::Services& services, automation::Date now);
    ~privProperty() override;
    privProperty(const privProperty&) = delete;
    privProperty& operator=(const privProperty&) = delete;

    const std::u16string& Name() const;

    automation::Variant Value() const;
    void Value(automation::Variant pvValue);  // let: modified = now, changed = True
    // The object form of the setter: modified = now, but changed stays as it was (on purpose).
    // A value that is no object is let.
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

    // The child collections, built from their kept text on the first call; never null. The same
    // collection is returned ever after.
    std::shared_ptr<privProperties> Attributes();
    std::shared_ptr<privProperties> Properties();

    // Does nothing: a property cleans up when the last reference goes.
    void Dispose() noexcept {}

    // Typed getters and setters. Getters never raise: what does not convert is 0, "" or False. Only a
    // text that there is no memory to copy raises 7.
    // Setters store their type, set modified to now and changed to True.
    std::int32_t ValueLng() const;
    void ValueLng(std::int32_t plValue);
    std::u16string ValueStr() const;
    void ValueStr(std::u16string psValue);
    void SetValueStrRef(std::u16string_view psValue);
    // Date 0 where the value is no date, number or text that the platform takes for a date.
    automation::Date ValueDate(std::int32_t plLocaleID = 0, std::int32_t plFlags = 0) const;
    void ValueDateSet(automation::Date pdValue);
    // With an argument: whether the value equals it. Without: the truth test of ValueBoolean.
    bool ValueTrue(const automation::Variant& pvTrueValue = automation::Variant::missing()) const;
    bool ValueBoolean() const;
    void ValueBoolean(bool pbValue);
    double ValueDbl() const;
    void ValueDbl(double pdValue);
    float ValueSng() const;
    void ValueSng(float pnValue);
    std::int16_t ValueInt() const;
    void ValueInt(std::int16_t piValue);

    // Estimate in bytes of the value alone; an integer counts 1, a long 2.
    std::int32_t Size() const;
    // Estimate of the characters in the text form, children included. Raises 6 on overflow.
    std::int32_t SizeStored();

    // For the collection, the text form and the RTF engine.

    void InitValue(std::u16string psName, automation::Variant&& pvValue, std::int32_t plEncoding, bool pbMultiple,
                   bool pbUpperCaseName);
    void InitString(std::u16string psName, std::u16string psValue, std::int32_t plEncoding, bool pbMultiple,
                    bool pbUpperCaseName);
    // Keeps the name's spelling, whatever pbUpperCaseName says.
    void InitObject(std::u16string psName, automation::ObjectRef poValue, std::int32_t plEncoding, bool pbMultiple,
                    bool pbUpperCaseName);
    // The quiet setters leave the time stamps and the changed flag alone.
    void SetValueQuiet(automation::Variant&& pvValue);
    void SetObjectQuiet(automation::ObjectRef poValue);
    void SetValueStrQuietChanged(std::u16string psValue);
    void SetMultiple(bool pbMultiple) noexcept { multiple_ = pbMultiple; }

    // Whether there is anything in the child collection, built or not.
    bool HasAttributes() const;
    bool HasProperties() const;
    // The child collection's text: written anew when it was built, else as it was kept.
    std::u16string AttributesStored() const;
    std::u16string PropertiesStored() const;
    // Keep text for the child collection without building it; a built one is let go.
    void SetAttributesStored(std::u16string psText);
    void SetPropertiesStored(std::u16string psText);

    // True when the text does not occur in the value, without regard to case.
    bool ValueNotIn(std::u16string_view psText) const;

    // The attached builder; an empty one is attached first if needed.
    std::shared_ptr<privStrCat> StrCatValue();
    void SetStrCatValue(std::shared_ptr<privStrCat> poBuilder);

    // Name and value without a copy. They are valid until the property changes; the
    // value is not current while a builder is attached.
    std::u16string_view nameView() const noexcept { return name_; }
    const automation::Variant& rawValue() const;
    const std::shared_ptr<privStrCat>& builder() const noexcept {
        static const std::shared_ptr<privStrCat> kNone;
        return extras_ != nullptr ? extras_->builder : kNone;
    }
    // The value when it is a text, attached builders left out.
    std::optional<std::u16string_view> plainText() const noexcept;

    automation::Variant invoke(std::u16string_view name, automation::InvokeKind kind,
                               std::span<automation::Variant> arguments) override;
    std::u16string typeName() const override { return u"privProperty"; }

private:
    friend class privProperties;
    friend class KeyedItems;
    friend class PropertyReader;
    friend class PropertyWriter;

    // A child collection: its text until it is built, the collection from then on.
    struct Child {
        std::u16string text;
        std::shared_ptr<privProperties> built;

        bool holdsAnything() const;
        std::u16string stored(int level) const;
    };
    // What few properties have.
    struct Extras {
        Child attributes;
        Child properties;
        std::shared_ptr<privStrCat> builder;
    };

    void SetName(std::u16string psName);
    // Take texts that stay where they are for as long as the property lives.
    void lendName(std::u16string_view name) noexcept { name_ = name; }
    void lendText(std::u16string_view text) noexcept;
    bool isLent() const noexcept { return lentText_.data() != nullptr; }
    void touch();
    Extras& extras();
    std::shared_ptr<privProperties> build(Child& child);
    std::int32_t valueSizeStored() const;
    std::int32_t sizeStored(int level);
    std::int32_t countChildren(int level);

    platform::Services& services_;
    // A property made from a text has name and value beside it in its slab, until somebody asks
    // for more than a look at them.
    std::u16string_view name_;
    mutable std::unique_ptr<const std::u16string> ownName_;
    mutable automation::Variant value_;     // Empty while the text is lent
    mutable std::u16string_view lentText_;  // none when it points nowhere
    std::unique_ptr<Extras> extras_;
    automation::Date created_;
    automation::Date modified_;
    std::uint8_t encoding_ = 0;
    bool multiple_ = false;
    bool changed_ = false;
    // For the collection that it is in:
    bool keyed_ = false;  // it carries the key of its name
    std::uint32_t keyHash_ = 0;
};

using PropertyRef = std::shared_ptr<privProperty>;

}  // namespace velmor
