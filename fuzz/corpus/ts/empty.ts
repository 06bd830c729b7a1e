<TS language="zh_CN"/>
