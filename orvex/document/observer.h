// IQVObserver: what a view, an inspector or a server implements to hear about changes of a document.
#pragma once

#include "orvex/document/document_types.h"

namespace Orvex {

class TORXBaseLabel;

class IQVObserver {
  public:
    virtual ~IQVObserver() = default;
    // Called on the main thread; the document may be read, but not changed, from inside the call.
    virtual void Update(TORXBaseLabel& document, TQVChange change) = 0;
};

}  // namespace Orvex
