# What a key is, against a table that is written down apart from the program's own.
foreach(test tst_keyvocabulary tst_keycodes)
  add_core_test(${test} keys)
  target_compile_definitions(${test} PRIVATE KEYS_FILE="${PROJECT_SOURCE_DIR}/tests/data/keys.tsv")
endforeach()
