" Vim file type plugin
" Language: texts of messages of the codec kvt_str (see kvt(5))

if exists('b:did_ftplugin')
  finish
endif
let b:did_ftplugin = 1

" The format has no comments. Lines are indented by two blanks a level.
setlocal comments= commentstring=
setlocal expandtab shiftwidth=2 softtabstop=2 autoindent smartindent

let b:undo_ftplugin = 'setlocal comments< commentstring< expandtab< shiftwidth< softtabstop<'
      \ . ' autoindent< smartindent<'
