// TTableItem: a kind whose properties are described by a property table (TSelf::PropTable()). The table
// answers the property accessors of TPropItem, writes and reads the kind's keys after those of TBase, and
// adds the kind's inspector rows. Kinds keep overriding for what a table cannot say (derived values after a
// read, a setter with side effects), then defer to this class.
#pragma once

#include <cstdint>
#include <string>

#include "orvex/document/document.h"
#include "orvex/io/json_writer.h"
#include "orvex/items/item_props.h"
#include "orvex/items/prop_table.h"

namespace Orvex {

template <class TBase, class TSelf>
class TTableItem : public TPropItem<TBase> {
  public:
    using TPropItem<TBase>::TPropItem;

    std::int64_t GetEnumProp(std::uint16_t p) const override {
        if (const auto* e = EnumRow(p)) return e->Get(Self());
        return TPropItem<TBase>::GetEnumProp(p);
    }
    // Out-of-range values are clamped to the row's bounds: an enum field never holds a value its kind lacks.
    void SetEnumProp(std::uint16_t p, std::int64_t v) override {
        const auto* row = TSelf::PropTable().Find(p);
        const auto* e = row != nullptr ? std::get_if<TEnumAccess<TSelf>>(&row->Field) : nullptr;
        if (e == nullptr) return TPropItem<TBase>::SetEnumProp(p, v);
        const std::int64_t value = TPropTable<TSelf>::Clamp(*row, v);
        if (e->Get(Self()) == value) return;
        TORXEnumValueCmd::AddCommand(this, p);
        e->Put(Self(), value);
        this->PropChanged(p);
        this->fOwner->ChangeState(TOrvexState::lsUpdate, this);
    }
    void SetBaseValueProp(std::uint16_t p, std::int64_t v) override {
        const auto* row = TSelf::PropTable().Find(p);
        TPropItem<TBase>::SetBaseValueProp(p, row != nullptr ? TPropTable<TSelf>::Clamp(*row, v) : v);
    }

    void WriteJsonTo(TJsonWriter& writer) const override {
        writer.BeginObject();
        this->WriteKeys(writer);
        writer.EndObject();
    }
    void WriteKeys(TJsonWriter& writer) const override {
        TPropItem<TBase>::WriteKeys(writer);
        TSelf::PropTable().Write(Self(), writer);
    }
    void ReadJson(std::int32_t version, const TJSON& obj) override {
        TPropItem<TBase>::ReadJson(version, obj);
        TSelf::PropTable().Read(
            Self(), obj, [this](std::string message) { this->fOwner->AddReadWarning(std::move(message)); });
    }
    void JsonInspector(TQVLInsTypeBases baseSet, TQVLInsTypes set, TJSON& array) const override {
        TPropItem<TBase>::JsonInspector(baseSet, set, array);
        TSelf::PropTable().Inspect(Self(), set, array);
    }

  protected:
    TAlphaColor* ColorField(std::uint16_t p) override { return FieldOf<TAlphaColor>(p); }
    bool* BoolField(std::uint16_t p) override { return FieldOf<bool>(p); }
    std::string* TextField(std::uint16_t p) override { return FieldOf<std::string>(p); }
    float* FloatField(std::uint16_t p) override { return FieldOf<float>(p); }
    std::int64_t* IntField(std::uint16_t p) override { return FieldOf<std::int64_t>(p); }

  private:
    template <class T>
    T* FieldOf(std::uint16_t p) {
        return TSelf::PropTable().template FieldOf<T>(Self(), p);
    }
    const TEnumAccess<TSelf>* EnumRow(std::uint16_t p) const {
        const auto* row = TSelf::PropTable().Find(p);
        return row != nullptr ? std::get_if<TEnumAccess<TSelf>>(&row->Field) : nullptr;
    }
    TSelf& Self() const { return static_cast<TSelf&>(const_cast<TTableItem&>(*this)); }
};

}  // namespace Orvex
