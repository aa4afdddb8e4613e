# The layers of libplotvane and what each may include. The build reads this
# table to declare each layer's target, and tests/layering reads it to fail
# the build's tests when a source reaches past it. docs/architecture.md
# explains the graph.
#
# PLOTVANE_LAYERS is in build order: a layer's target links only the layers
# before it. The three document/dialogs/view layers include each other's
# headers in their sources (the manager owns the chart dialog, which owns the
# view, and each calls back into the others); their headers stay acyclic.

set(PLOTVANE_LAYERS
    foundation
    io
    measure
    platform
    dialogs
    document
    view
    overlays
    platform/headless)

# Layers a layer's sources may include, beyond itself.
set(PLOTVANE_ALLOWED_foundation "")
set(PLOTVANE_ALLOWED_io foundation)
set(PLOTVANE_ALLOWED_measure foundation)
set(PLOTVANE_ALLOWED_platform foundation)
set(PLOTVANE_ALLOWED_dialogs foundation platform document view)
set(PLOTVANE_ALLOWED_document foundation measure dialogs view)
set(PLOTVANE_ALLOWED_view foundation measure platform dialogs document)
set(PLOTVANE_ALLOWED_overlays foundation measure platform dialogs document view)
set(PLOTVANE_ALLOWED_platform/headless foundation measure platform dialogs document view)

# Toolkit backends: layers built into libraries of their own beside
# libplotvane (platform/wx into libplotvane_wx). Only they may include a
# toolkit's headers (wx/, gtk/, X11/).
set(PLOTVANE_TOOLKIT_LAYERS platform/wx)
set(PLOTVANE_ALLOWED_platform/wx foundation measure platform dialogs document view overlays
    platform/headless)

# Layers a layer's headers may include: stricter where the sources meet in a
# cycle, so that the cycle is kept to forward declarations.
set(PLOTVANE_HEADER_ALLOWED_dialogs foundation platform)
set(PLOTVANE_HEADER_ALLOWED_document foundation measure dialogs)
set(PLOTVANE_HEADER_ALLOWED_view foundation measure platform)

# Link order for the build: the layers a layer's target is declared to use.
# The back edges of the document/dialogs/view cycle are left out (object
# libraries cannot form a cycle); the include check still holds them.
function(plotvane_layer_build_deps layer out)
    set(deps "")
    foreach(dep IN LISTS PLOTVANE_ALLOWED_${layer})
        list(FIND PLOTVANE_LAYERS ${dep} dep_pos)
        list(FIND PLOTVANE_LAYERS ${layer} pos)
        if(dep_pos LESS pos)
            list(APPEND deps ${dep})
        endif()
    endforeach()
    set(${out} ${deps} PARENT_SCOPE)
endfunction()

# "platform/headless" -> "plotvane_platform_headless"
function(plotvane_layer_target layer out)
    string(REPLACE "/" "_" name ${layer})
    set(${out} plotvane_${name} PARENT_SCOPE)
endfunction()
