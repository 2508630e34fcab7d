// Kind-specific properties with undo: a kind names its fields by property index, and the undo commands
// read and restore them through these accessors. A setter records one command, and only when the value
// changes, then lets the kind recompute what depends on the property.
#pragma once

#include <cstdint>
#include <string>

#include "orvex/document/document.h"
#include "orvex/document/undo_commands.h"

namespace Orvex {

template <class TBase>
class TPropItem : public TBase {
public:
    using TBase::TBase;

    TAlphaColor GetColorProp(std::uint16_t p) const override {
        const TAlphaColor* f = Self().ColorField(p);
        return f != nullptr ? *f : TBase::GetColorProp(p);
    }
    void SetColorProp(std::uint16_t p, TAlphaColor v) override {
        if (TAlphaColor* f = ColorField(p))
            SetField<TORXColorCmd>(*f, v, p);
        else
            TBase::SetColorProp(p, v);
    }
    bool GetBoolProp(std::uint16_t p) const override {
        const bool* f = Self().BoolField(p);
        return f != nullptr ? *f : TBase::GetBoolProp(p);
    }
    void SetBoolProp(std::uint16_t p, bool v) override {
        if (bool* f = BoolField(p))
            SetField<TORXBoolCmd>(*f, v, p);
        else
            TBase::SetBoolProp(p, v);
    }
    std::string GetTextProp(std::uint16_t p) const override {
        const std::string* f = Self().TextField(p);
        return f != nullptr ? *f : TBase::GetTextProp(p);
    }
    void SetTextProp(std::uint16_t p, const std::string& v) override {
        if (std::string* f = TextField(p))
            SetField<TORXTxtCmd>(*f, v, p);
        else
            TBase::SetTextProp(p, v);
    }
    double GetFloatProp(std::uint16_t p) const override {
        const float* f = Self().FloatField(p);
        return f != nullptr ? static_cast<double>(*f) : TBase::GetFloatProp(p);
    }
    void SetFloatProp(std::uint16_t p, double v) override {
        if (float* f = FloatField(p))
            SetField<TORXFloatCmd>(*f, static_cast<float>(v), p);
        else
            TBase::SetFloatProp(p, v);
    }
    std::int64_t GetBaseValueProp(std::uint16_t p) const override {
        const std::int64_t* f = Self().IntField(p);
        return f != nullptr ? *f : TBase::GetBaseValueProp(p);
    }
    void SetBaseValueProp(std::uint16_t p, std::int64_t v) override {
        if (std::int64_t* f = IntField(p))
            SetField<TORXBaseValueCmd>(*f, v, p);
        else
            TBase::SetBaseValueProp(p, v);
    }

protected:
    // The field behind a property index, or nullptr when the kind has none of that type there.
    virtual TAlphaColor* ColorField(std::uint16_t p) { (void)p; return nullptr; }
    virtual bool* BoolField(std::uint16_t p) { (void)p; return nullptr; }
    virtual std::string* TextField(std::uint16_t p) { (void)p; return nullptr; }
    virtual float* FloatField(std::uint16_t p) { (void)p; return nullptr; }
    virtual std::int64_t* IntField(std::uint16_t p) { (void)p; return nullptr; }
    // Runs after a property changed (also when undo restores it): derived geometry follows here.
    virtual void PropChanged(std::uint16_t p) { (void)p; }

    template <class TCmd, class T>
    bool SetField(T& field, const T& value, std::uint16_t p) {
        if (field == value) return false;
        TCmd::AddCommand(this, p);
        field = value;
        PropChanged(p);
        this->fOwner->ChangeState(TOrvexState::lsUpdate, this);
        return true;
    }
    template <class E>
    bool SetEnumField(E& field, E value, std::uint16_t p) {
        return SetField<TORXEnumValueCmd>(field, value, p);
    }

private:
    TPropItem& Self() const { return const_cast<TPropItem&>(*this); }  // the field lookups are shared
};

}  // namespace Orvex
