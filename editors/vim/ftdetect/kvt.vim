autocmd BufNewFile,BufRead *.kvt setfiletype kvt
