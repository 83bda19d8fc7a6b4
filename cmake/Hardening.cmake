# How the release program is made hard to misuse: checked copies, guarded stacks, addresses that differ from run to run,
# and look-up tables that are read-only from the start on. Other build types are for finding faults, with tools that
# bring checks of their own.
set(MSPDI_HARDENED $<CONFIG:Release>)
foreach(target mspdi MSPDIExport mspdi_conform mspdi_page mspdi-export mspdi-conform mspdi-page)
  target_compile_options(${target} PRIVATE
    # Some compilers set a level themselves, and warn of a second one.
    "$<${MSPDI_HARDENED}:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2;-fstack-protector-strong;-fPIE>")
endforeach()
foreach(program MSPDIExport mspdi-export mspdi-conform mspdi-page)
  target_link_options(${program} PRIVATE "$<${MSPDI_HARDENED}:-pie;LINKER:-z,relro;LINKER:-z,now>")
endforeach()
