// The text extents that placing texts needs. Real glyph metrics belong to the host's font engine, so the
// library only defines the interface and a headless approximation; a host installs its own with
// QVLSetTextMetrics before it lays out texts.
#pragma once

#include <cstdint>
#include <string_view>

#include "orvex/document/layer.h"

namespace Orvex {

class TORXBaseLabel;

// Lengths in base units for a font whose height (TQVLFont::FontHeight) is in millimetres.
class ITextMetrics {
  public:
    virtual ~ITextMetrics() = default;
    virtual std::int64_t TextWidth(std::string_view text, const TQVLFont& font) const = 0;  // one line
    virtual std::int64_t LineHeight(const TQVLFont& font) const = 0;  // baseline to baseline
    virtual std::int64_t Ascent(const TQVLFont& font) const = 0;      // top of the line to its baseline
};

// Without a font engine: an average advance of half the height per character (0.6 for monospaced fonts,
// bold 10 % wider), lines 1.2 times the height apart, the baseline at 0.8 of the height.
class TApproxTextMetrics final : public ITextMetrics {
  public:
    std::int64_t TextWidth(std::string_view text, const TQVLFont& font) const override;
    std::int64_t LineHeight(const TQVLFont& font) const override;
    std::int64_t Ascent(const TQVLFont& font) const override;
};

// The process-wide metrics: the approximation until a host installs its own (not owned; nullptr resets).
// On a thread inside a TTextMetricsScope, QVLTextMetrics() answers the scope's metrics instead.
const ITextMetrics& QVLTextMetrics();
void QVLSetTextMetrics(const ITextMetrics* metrics);
const ITextMetrics* QVLGetTextMetrics();  // the installed process-wide metrics; nullptr for the approximation
// The metrics a document's texts are laid out with: its own (TQVLDocumentServices) when it has them, else
// QVLTextMetrics(). A null document gets QVLTextMetrics().
const ITextMetrics& QVLTextMetrics(const TORXBaseLabel* document);

// Makes metrics what QVLTextMetrics() answers on this thread while the scope lives, so that a layout
// stage measuring through helpers that have no document at hand measures with its document's metrics.
// Scopes nest; each restores the one before it. The metrics must outlive the scope.
class TTextMetricsScope {
  public:
    explicit TTextMetricsScope(const ITextMetrics& metrics);
    ~TTextMetricsScope();
    TTextMetricsScope(const TTextMetricsScope&) = delete;
    TTextMetricsScope& operator=(const TTextMetricsScope&) = delete;

  private:
    const ITextMetrics* fPrevious;
};

// Code points in a UTF-8 text: what the approximation counts as characters.
std::size_t CodePointCount(std::string_view text);

}  // namespace Orvex
