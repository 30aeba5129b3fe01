The answer to update-info counts on from the values given; those are readable but no part of the reply.
Also through the plug-in.

-- console --
$ orvanta-config simulate --message update-info | sed -n '/^Reply/,/^$/p'
Reply
  Auto-Update-Current0  orvanta-config-6.8.378.X64.dll
  Auto-Update-Pattern0  agents\tarvo\orvanta-config-*.X64.dll
  Auto-Update-Count     1
  status                2

$ orvanta-config simulate --message update-info --set Auto-Update-Count=3 --set A=b | sed -n '/^Reply/,/^$/p'
Reply
  Auto-Update-Current3  orvanta-config-6.8.378.X64.dll
  Auto-Update-Pattern3  agents\tarvo\orvanta-config-*.X64.dll
  Auto-Update-Count     4
  status                2

$ for n in x -1 '7 --set Auto-Update-Count=8'; do orvanta-config simulate --message update-info --set Auto-Update-Count=$n | grep Count; done
  Auto-Update-Count     1
  Auto-Update-Count              0
  Auto-Update-Count     9
