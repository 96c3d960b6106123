" Vim syntax file
" Language: texts of messages of the codec kvt_str (see kvt(5))

if exists('b:current_syntax')
  finish
endif

syntax case match

" A line of a block: a key, a colon at once, and a value; or the name of a block and a brace.
syntax match kvtKey /^\s*\zs\h\w*\ze:/ nextgroup=kvtColon
syntax match kvtBlock /^\s*\zs\h\w*\ze\s*{/
syntax match kvtBrace /[{}]/
syntax match kvtColon /:/ contained nextgroup=kvtNumber,kvtKind,kvtText skipwhite
syntax match kvtNumber /[-+]\?\%(\d\+\%(\.\d*\)\?\%([eE][-+]\?\d\+\)\?\|\.\d\+\|inf\>\|nan\>\)/ contained nextgroup=kvtAfterNumber
syntax region kvtText start=/"/ end=/"/ oneline contained

" The envelope and the type line. The list is that of "kvt kinds", without those that have no record.
syntax match kvtMessage /^\s*\zsmsg\ze\s*{/
syntax match kvtType /^\s*\zstype\ze:\s*\u/ nextgroup=kvtColon
syntax match kvtKind /\<BEGIN_JOB\>/ contained
syntax match kvtKind /\<END_JOB\>/ contained
syntax match kvtKind /\<JOB_DATA\>/ contained
syntax match kvtKind /\<ALLOC_GROUPS\>/ contained
syntax match kvtKind /\<GROUPS_DATA\>/ contained
syntax match kvtKind /\<RELEASE_GROUPS\>/ contained
syntax match kvtKind /\<REQ_SM_DATA\>/ contained
syntax match kvtKind /\<SM_DATA\>/ contained
syntax match kvtKind /\<JOB_ERROR\>/ contained
syntax match kvtKind /\<AM_SIGNAL\>/ contained
syntax match kvtKind /\<JOB_INFO_REQUEST\>/ contained
syntax match kvtKind /\<JOB_INFO_REPLY\>/ contained
syntax match kvtKind /\<PERSISTENT_JOB_INFO\>/ contained
syntax match kvtKind /\<CREATE_RESERVATION\>/ contained
syntax match kvtKind /\<DELETE_RESERVATION\>/ contained
syntax match kvtKind /\<RESERVATION_INFO_REQUEST\>/ contained
syntax match kvtKind /\<RESERVATION_INFO_REPLY\>/ contained
syntax match kvtKind /\<PERSISTENT_RESERVATION_INFO\>/ contained
syntax match kvtKind /\<TOPOLOGY_INFO_REQUEST\>/ contained
syntax match kvtKind /\<TOPOLOGY_INFO_REPLY\>/ contained
syntax match kvtKind /\<EVENTS_REQUEST\>/ contained
syntax match kvtKind /\<EVENTS_REPLY\>/ contained
syntax match kvtKind /\<RESOURCE_DATA\>/ contained

" What the reader does not read, or reads as something else.
syntax match kvtAfterNumber /\s*[^ \t\r][^\r]*/ contained
syntax match kvtBlankBeforeColon /\%(^\s*\h\w*\)\@<=\s\+:/
syntax match kvtCarriageReturn /\r/ containedin=ALL

highlight default link kvtMessage Keyword
highlight default link kvtType Keyword
highlight default link kvtKind Type
highlight default link kvtBlock Structure
highlight default link kvtBrace Delimiter
highlight default link kvtKey Identifier
highlight default link kvtColon Delimiter
highlight default link kvtNumber Number
highlight default link kvtText String
highlight default link kvtAfterNumber Error
highlight default link kvtBlankBeforeColon Error
highlight default link kvtCarriageReturn Error

let b:current_syntax = 'kvt'
