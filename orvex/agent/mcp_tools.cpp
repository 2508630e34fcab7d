// Tool registration and what the server derives from a tool's name: title, behaviour hints, whether the
// drawing changes, and the structured-result schema. Also the instructions text sent to agents.
#include "orvex/agent/mcp_tools.h"

#include <atomic>
#include <mutex>
#include <shared_mutex>

#include "orvex/agent/mcp_server.h"
#include "orvex/core/text.h"

namespace Orvex {

using Qvl::Utils::SameTextIgnoringCase;
using Qvl::Utils::ToLowerAscii;
using Qvl::Utils::Trim;

namespace {

std::atomic<TMCPRegisterProc> gDefaultToolsRegistration{nullptr};

bool OneOf(std::string_view aName, std::initializer_list<std::string_view> aNames) {
    for (const auto name : aNames) {
        if (SameTextIgnoringCase(aName, name)) return true;
    }
    return false;
}

bool IsReadOnlyTool(std::string_view aName) {
    return OneOf(aName, {"get_drawing_info", "list_items", "get_item", "list_layers", "render_preview"});
}

TJSON ArrayOfObjects() {
    return {{"type", "array"}, {"items", {{"type", "object"}}}};
}

TJSON ObjectSchema(std::initializer_list<std::pair<const char*, TJSON>> aProperties) {
    TJSON properties = TJSON::object();
    TJSON required = TJSON::array();
    for (const auto& [name, schema] : aProperties) {
        properties[name] = schema;
        required.push_back(name);
    }
    return {{"type", "object"}, {"properties", std::move(properties)}, {"required", std::move(required)}};
}

TJSON Typed(const char* aType) {
    return {{"type", aType}};
}

}  // namespace

void MCPSetDefaultToolsRegistration(TMCPRegisterProc aProc) {
    gDefaultToolsRegistration = aProc;
}

TMCPRegisterProc MCPDefaultToolsRegistration() {
    return gDefaultToolsRegistration;
}

std::string ToolTitle(std::string_view aName) {
    std::string title;
    title.reserve(aName.size());
    bool wordStart = true;
    for (const char c : aName) {
        if (c == '-' || c == '.' || c == '_') {
            title += ' ';
            wordStart = true;
        } else if (wordStart) {
            title += c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
            wordStart = false;
        } else {
            title += c;
        }
    }
    return title;
}

bool ToolChangesDrawing(std::string_view aName) {
    const std::string name = ToLowerAscii(aName);
    // It changes where images are looked for, not the drawing.
    if (name == "set_image_folder") return false;
    for (const std::string_view prefix :
         {"add_", "set_", "modify_", "delete_", "clear_", "load_", "create_"}) {
        if (name.starts_with(prefix)) return true;
    }
    return name == "setup_drawing";
}

TJSON BuildToolAnnotations(std::string_view aName) {
    const bool readOnly = IsReadOnlyTool(aName);
    TJSON annotations = TJSON::object();
    annotations["title"] = ToolTitle(aName);
    annotations["readOnlyHint"] = readOnly;
    annotations["destructiveHint"] =
        OneOf(aName, {"clear_drawing", "delete_item", "load_drawing", "load_diagram", "load_gantt"});
    annotations["idempotentHint"] =
        readOnly || aName.starts_with("set_") ||
        OneOf(aName, {"modify_item", "modify_layer", "begin_update", "end_update"});
    annotations["openWorldHint"] =
        OneOf(aName, {"add_image", "load_drawing", "save_drawing", "export_document", "load_symbol_library",
                      "save_symbol_library", "create_symbol_library_from_image"});
    return annotations;
}

TJSON BuildToolOutputSchema(std::string_view aName) {
    if (SameTextIgnoringCase(aName, "get_item")) return Typed("object");
    if (SameTextIgnoringCase(aName, "load_diagram")) {
        return ObjectSchema({{"loaded", Typed("boolean")},
                             {"items_created", Typed("integer")},
                             {"diagnostics", ArrayOfObjects()}});
    }
    if (SameTextIgnoringCase(aName, "list_items")) return ObjectSchema({{"items", ArrayOfObjects()}});
    if (SameTextIgnoringCase(aName, "list_layers")) return ObjectSchema({{"layers", ArrayOfObjects()}});
    if (SameTextIgnoringCase(aName, "render_preview")) {
        return ObjectSchema({{"format", Typed("string")},
                             {"scale", Typed("number")},
                             {"item_count", Typed("integer")},
                             {"byte_size", Typed("integer")}});
    }
    if (SameTextIgnoringCase(aName, "get_drawing_info")) {
        return ObjectSchema({{"units", Typed("string")},
                             {"editor_mode", Typed("string")},
                             {"items_count", Typed("integer")},
                             {"layers_count", Typed("integer")},
                             {"selection_count", Typed("integer")},
                             {"paper", Typed("object")}});
    }
    return TJSON();
}

const std::string& DefaultInstructions() {
    static const std::string kText =
        R"(Orvex drawing server. The canvas is a 2D drawing surface with three editor modes: "labelling" )"
        R"((label/sticker design: texts, barcodes, QR, images, tables...), "flowchart" (flow diagrams: )"
        R"(add_flow elements connected with add_link) and "drawing" (technical drawings with a 1:N scale, )"
        R"(dimensions and symbols). Start with get_drawing_info to inspect the current state, and use )"
        R"(setup_drawing to set the mode, the measurement units (mm, inch, cm; plus dm, m, ft, yd in )"
        R"(drawing mode) and, in drawing mode, the draw_scale (e.g. 20 means 1:20). All coordinates and )"
        R"(sizes are expressed in the current units, with origin at the top-left corner. Colors are )"
        R"("#RRGGBB" or "#AARRGGBB" strings. Item indexes are zero-based; layer indexes are one-based. For )"
        R"(a complete Mermaid or PlantUML request prefer load_diagram. For manually built flowcharts, )"
        R"(create nodes first, read the IDs returned by add_flow, and only then call add_link; do not )"
        R"(parallelize dependent calls. When adding many elements, call begin_update, perform the batch, )"
        R"(and always call end_update, including after an error. Before finishing, call get_drawing_info )"
        R"(and list_items, then call render_preview to visually verify the result. Correct overlaps, )"
        R"(clipped elements and unreadable text before answering. Do not clear a drawing, access the )"
        R"(network, or read/write a file unless the user request authorizes that action.)";
    return kText;
}

void TORXMCPServer::RegisterTool(std::string aName, std::string aDescription, TJSON aInputSchema,
                                 TMCPToolCall aHandler, TJSON aOutputSchema) {
    std::unique_lock lock(fToolsMutex);
    fTools.push_back({std::move(aName), std::move(aDescription), std::move(aInputSchema), std::move(aHandler),
                      std::move(aOutputSchema)});
    ++fToolsGeneration;
}

void TORXMCPServer::RegisterDefaultTools() {
    TMCPToolsRegistration own;
    {
        // Called outside the lock: the registration calls RegisterTool, which takes it.
        std::shared_lock lock(fToolsMutex);
        own = fToolsRegistration;
    }
    if (own)
        own(*this);
    else if (const auto proc = MCPDefaultToolsRegistration())
        proc(*this);
}

void TORXMCPServer::SetToolsRegistration(TMCPToolsRegistration aRegistration) {
    std::unique_lock lock(fToolsMutex);
    fToolsRegistration = std::move(aRegistration);
}

bool TORXMCPServer::HasToolsRegistration() const {
    std::shared_lock lock(fToolsMutex);
    return static_cast<bool>(fToolsRegistration);
}

std::size_t TORXMCPServer::ToolCount() const {
    std::shared_lock lock(fToolsMutex);
    return fTools.size();
}

std::vector<TMCPToolDef> TORXMCPServer::Tools() const {
    std::shared_lock lock(fToolsMutex);
    return fTools;
}

std::string TORXMCPServer::EffectiveInstructions() const {
    return Trim(fInstructions).empty() ? DefaultInstructions() : fInstructions;
}

TJSON TORXMCPServer::BuildAIToolDefinitions() {
    if (ToolCount() == 0) RegisterDefaultTools();
    TJSON definitions = TJSON::array();
    std::shared_lock lock(fToolsMutex);
    for (const auto& tool : fTools) {
        TJSON entry = TJSON::object();
        entry["name"] = tool.Name;
        entry["description"] = tool.Description;
        entry["input_schema"] =
            tool.InputSchema.is_null()
                ? TJSON{{"type", "object"}, {"properties", TJSON::object()}, {"additionalProperties", false}}
                : tool.InputSchema;
        definitions.push_back(std::move(entry));
    }
    return definitions;
}

}  // namespace Orvex
