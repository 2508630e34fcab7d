#include "host/drawing_server.h"

#include <filesystem>

#include "orvex/agent/main_thread.h"
#include "orvex/document/document.h"

namespace Orvex::Host {

TQVLFileResult OpenDrawing(const std::string& aFileName, TORXBaseLabel& aDocument) {
    std::error_code ec;
    TQVLFileResult loaded;
    if (!aFileName.empty() && std::filesystem::exists(aFileName, ec)) {
        loaded = LoadDrawingFile(aFileName, aDocument);
        if (!loaded) return loaded;
    }
    aDocument.Loaded();
    return loaded;  // with the warnings of the read, if any
}

void BindDrawingServer(TORXMCPServer& aServer, TORXBaseLabel& aDocument, IMainThreadRunner& aRunner,
                       const TToolOptions& aTools) {
    aServer.SetLabel(&aDocument);
    aServer.SetMainThreadRunner(&aRunner);
    aServer.SetDocumentHooks(MakeDocumentHooks());
    aServer.SetToolsRegistration(StandardToolsRegistration(aTools));
}

}  // namespace Orvex::Host
