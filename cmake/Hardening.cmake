# Hardens the release programs against attacks: checked copies, guarded stacks, random addresses, and linker tables that
# are read-only from the start. Other build types are for finding faults with tools that have their own checks.
set(MSPDI_HARDENED $<CONFIG:Release>)
foreach(target mspdi MSPDIExport mspdi_conform mspdi_page mspdi-export mspdi-conform mspdi-page)
  target_compile_options(${target} PRIVATE
    # -U first: some compilers define a level themselves and would warn of a second definition.
    "$<${MSPDI_HARDENED}:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2;-fstack-protector-strong;-fPIE>")
endforeach()
foreach(program MSPDIExport mspdi-export mspdi-conform mspdi-page)
  target_link_options(${program} PRIVATE "$<${MSPDI_HARDENED}:-pie;LINKER:-z,relro;LINKER:-z,now>")
endforeach()
